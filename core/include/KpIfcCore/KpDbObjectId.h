#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstddef>
#include <cstdint>

namespace KP_SDAI {

class KpIfcEntityBase;
class KpIfcModel;

/// How an instance is opened. Opening for reading touches nothing that is shared between threads.
enum OpenMode : int { kForRead = 0, kForWrite = 1 };

/// The place of one instance in its model: one word, whose address never changes while the model lives.
///
/// The word is 0 where the model has no instance of that name, the address of the instance, or (lowest bit set) the
/// address of the text of a record that could not be bound to a class. In a file that was opened lazily it may also be
/// (second bit set) where the instance's record stands that has not been read yet.
struct KpIfcSlot {
    static constexpr std::uintptr_t kKeptRecord = 1;
    static constexpr std::uintptr_t kUnread = 2;
    static constexpr std::uintptr_t kNoInstance = kKeptRecord | kUnread;
    std::uintptr_t word;
};

/// What a slot holds that holds no instance yet: reads its record, where there is one to be read; else null. Throws
/// what KpIfcOpenOptions::lazy says.
KPIFCCORE_EXPORT KpIfcEntityBase* readOnTouch(KpIfcSlot& slot);

/// A run of slots with what they share before them. Aligned to its size, so a slot finds it by masking its address.
struct KpIfcSlotChunk {
    static constexpr std::size_t kBytes = 4096;
    static constexpr std::size_t kSlots = (kBytes - 32) / sizeof(KpIfcSlot);

    KpIfcModel* model;
    std::uint64_t modelSerial;  ///< order of the models in this process
    std::uint64_t firstName;    ///< name of slot 0 where names are consecutive
    const std::uint64_t* names; ///< names of the slots where they are not, else null
    KpIfcSlot slots[kSlots];

    static KpIfcSlotChunk* of(const KpIfcSlot* slot) {
        return reinterpret_cast<KpIfcSlotChunk*>(reinterpret_cast<std::uintptr_t>(slot) & ~std::uintptr_t{kBytes - 1});
    }
    std::uint64_t nameOf(const KpIfcSlot* slot) const {
        const std::size_t index = static_cast<std::size_t>(slot - slots);
        return names ? names[index] : firstName + index;
    }
};
static_assert(sizeof(KpIfcSlotChunk) == KpIfcSlotChunk::kBytes);

/// Handle of an instance inside a model: the only way in which one instance refers to another. One pointer wide.
///
/// Handles order by model and instance name, never by address. A handle must not be used after its model is gone.
class KpDbObjectId {
public:
    constexpr KpDbObjectId() = default;
    constexpr explicit KpDbObjectId(KpIfcSlot* slot) : m_slot(slot) {}

    bool isNull() const { return m_slot == nullptr; }
    void setNull() { m_slot = nullptr; }

    /// The instance, or null where the handle is null or names no instance. The second argument has no effect here;
    /// an opened instance is ended with KpIfcEntityBase::close().
    KpIfcEntityBase* openObject(OpenMode = kForRead, bool = false) const {
        if (m_slot == nullptr) return nullptr;
        if (m_slot->word & KpIfcSlot::kNoInstance) [[unlikely]]
            return readOnTouch(*m_slot);
        return reinterpret_cast<KpIfcEntityBase*>(m_slot->word);
    }
    /// The same without reading anything: null also for an instance that has not been read yet.
    KpIfcEntityBase* instanceRead() const {
        if (m_slot == nullptr || (m_slot->word & KpIfcSlot::kNoInstance)) return nullptr;
        return reinterpret_cast<KpIfcEntityBase*>(m_slot->word);
    }

    /// The instance name (the n of #n); 0 for the null handle.
    std::uint64_t instanceName() const { return m_slot ? KpIfcSlotChunk::of(m_slot)->nameOf(m_slot) : 0; }
    KpIfcModel* model() const { return m_slot ? KpIfcSlotChunk::of(m_slot)->model : nullptr; }
    /// True where the model has an instance or a kept record of this name.
    bool isDefined() const { return m_slot != nullptr && m_slot->word != 0; }
    /// True where that is a record kept as text, as far as it has been read.
    bool isKeptRecord() const { return m_slot != nullptr && (m_slot->word & KpIfcSlot::kKeptRecord); }
    KpIfcSlot* slot() const { return m_slot; }

    friend bool operator==(const KpDbObjectId& a, const KpDbObjectId& b) { return a.m_slot == b.m_slot; }
    friend bool operator<(const KpDbObjectId& a, const KpDbObjectId& b) {
        if (a.m_slot == b.m_slot || b.m_slot == nullptr) return false;
        if (a.m_slot == nullptr) return true;
        const KpIfcSlotChunk* x = KpIfcSlotChunk::of(a.m_slot);
        const KpIfcSlotChunk* y = KpIfcSlotChunk::of(b.m_slot);
        if (x->modelSerial != y->modelSerial) return x->modelSerial < y->modelSerial;
        return x->nameOf(a.m_slot) < y->nameOf(b.m_slot);
    }

private:
    KpIfcSlot* m_slot = nullptr;
};

} // namespace KP_SDAI
