#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>

#include <cstdint>

namespace KP_SDAI {

/// A field with references that is looked at again when everything is read. Its place in the source and its number
/// share a word.
class PendingField {
public:
    PendingField(KpIfcEntityBase& instance, std::uint64_t offset, std::uint32_t field)
        : m_instance(&instance), m_offsetAndField(offset << 16 | field) {}
    KpIfcEntityBase& instance() const { return *m_instance; }
    std::uint64_t offset() const { return m_offsetAndField >> 16; }
    std::uint32_t field() const { return static_cast<std::uint32_t>(m_offsetAndField & 0xFFFF); }
    friend bool operator==(const PendingField& a, const PendingField& b) = default;

private:
    KpIfcEntityBase* m_instance;
    std::uint64_t m_offsetAndField;
};

} // namespace KP_SDAI
