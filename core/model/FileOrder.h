#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace KP_SDAI {

/// The source text of something that has no class: a record, or structure of the file between records.
struct alignas(8) KeptRecord {
    std::string text;       ///< with its semicolon
    std::uint64_t name = 0; ///< of the record; 0 for what is none or has none
};

/// The source text of a field whose attribute cannot hold it. It is written as long as the attribute would be written
/// as `normal`: as it was right after reading.
struct KeptField {
    static constexpr std::uint32_t kWholeRecord = UINT32_MAX; ///< all parameters, where their number is wrong
    std::uint32_t field;
    std::string source;
    std::string normal;
};

/// One place in the order in which a file had its records: an instance's slot or a kept record.
class OrderEntry {
public:
    explicit OrderEntry(KpIfcSlot* slot) : m_word(reinterpret_cast<std::uintptr_t>(slot)) {}
    explicit OrderEntry(KeptRecord* record) : m_word(reinterpret_cast<std::uintptr_t>(record) | 1) {}
    KpIfcSlot* slot() const { return m_word & 1 ? nullptr : reinterpret_cast<KpIfcSlot*>(m_word); }
    KeptRecord* record() const {
        return m_word & 1 ? reinterpret_cast<KeptRecord*>(m_word & ~std::uintptr_t{1}) : nullptr;
    }

private:
    std::uintptr_t m_word;
};

/// What reading a stretch of a file has put into the slots of a model, in file order, and what the model has not been
/// told of yet: ModelData::take().
struct ReadInstances {
    std::vector<OrderEntry> order;
    bool isAscending = true; ///< by name, nothing kept between
    std::uint64_t firstName = 0;
    std::uint64_t highestName = 0;
    std::size_t count = 0;     ///< of instances
    std::size_t keptCount = 0; ///< of records kept as text
    std::list<KeptRecord> kept;
    std::vector<KpIfcEntityBase*> toDestroy; ///< hold memory of their own
    std::vector<std::pair<KpIfcEntityBase*, KeptField>> keptFields;

    ReadInstances() = default;
    ReadInstances(const ReadInstances&) = delete;
    ReadInstances& operator=(const ReadInstances&) = delete;
    /// Where no model takes care of them.
    ~ReadInstances() {
        for (KpIfcEntityBase* instance : toDestroy) instance->~KpIfcEntityBase();
    }

    /// Drops all.
    void forget() noexcept {
        for (KpIfcEntityBase* instance : toDestroy) instance->~KpIfcEntityBase();
        toDestroy.clear();
        keptFields.clear();
        kept.clear();
        forgetPlaces();
    }
    /// Drops the places of all, and how many there are.
    void forgetPlaces() noexcept {
        order.clear();
        isAscending = true;
        firstName = highestName = 0;
        count = keptCount = 0;
    }

    KeptRecord& keep(std::string text, std::uint64_t name) {
        KeptRecord& record = kept.emplace_back(KeptRecord{std::move(text), name});
        order.emplace_back(&record);
        isAscending = false;
        if (name > highestName) highestName = name;
        return record;
    }
    void noteInstance(KpIfcSlot* slot, std::uint64_t name) {
        order.emplace_back(slot);
        if (name <= highestName) isAscending = false;
        if (count++ == 0) firstName = name;
        if (name > highestName) highestName = name;
    }
};

} // namespace KP_SDAI
