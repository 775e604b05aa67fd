#pragma once

#include <KpIfcCore/KpIfcHeader.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace KP_SDAI {

/// What was noted of a source while it was read: as much as it takes to write it again with only some records changed.
///
/// Records have no places here. The source is cut into blocks, and of each is known between which names its records'
/// lie; a record that changed is looked for in the blocks that may have it, by reading those again. Only what such a
/// look could not find again for itself is noted one by one.
class SourceLayout {
public:
    /// A stretch of the source that begins and ends between statements.
    struct Block {
        std::uint64_t size;
        std::uint64_t digest;
        std::uint64_t lowestName; ///< above highestName where there is no record
        std::uint64_t highestName;
        std::uint64_t lines; ///< line feeds in it
    };
    /// A stretch without records that belong to instances.
    struct Opaque {
        std::uint64_t begin;
        std::uint64_t end;
        std::uint64_t name; ///< of the record kept as text that it is; else 0
    };
    static std::uint64_t digest(std::string_view bytes);

    void noteName(std::uint64_t name) {
        if (name < m_lowestName) m_lowestName = name;
        if (name > m_highestName) m_highestName = name;
    }
    /// Adds what was noted of the stretch that follows, and empties `next`.
    void append(SourceLayout& next);
    /// Ends the block that began where the one before ended.
    void closeBlock(std::string_view bytes);
    /// In ascending order.
    void noteOpaque(std::uint64_t begin, std::uint64_t end, std::uint64_t name = 0);
    /// Of several records of one name, the one that counts begins at `offset`.
    void noteCounting(std::uint64_t name, std::uint64_t offset) { m_counting[name] = offset; }
    /// The record at `offset` does not count, for one of its name stands before it.
    void noteSurplus(std::uint64_t offset) { m_surplus.insert(offset); }
    bool counts(std::uint64_t name, std::uint64_t offset) const {
        const auto found = m_counting.find(name);
        return (found == m_counting.end() || found->second == offset) && !m_surplus.count(offset);
    }

    /// The record of an instance at `offset` ends elsewhere than behind its first semicolon.
    void noteIrregularEnd(std::uint64_t offset, std::uint64_t end) { m_irregularEnds[offset] = end; }
    /// 0 where it is regular.
    std::uint64_t irregularEnd(std::uint64_t offset) const {
        const auto found = m_irregularEnds.find(offset);
        return found == m_irregularEnds.end() ? 0 : found->second;
    }

    const std::vector<Block>& blocks() const { return m_blocks; }
    const std::vector<Opaque>& opaque() const { return m_opaque; }

    std::vector<std::uint64_t> header;            ///< where the header's records begin, in their order
    std::vector<KpIfcHeaderRecord> headerRecords; ///< what they say
    std::uint64_t headerEnd = 0;                  ///< where further header records go
    std::uint64_t dataEnd = 0;                    ///< where further records go
    bool hasDataSection = false;

private:
    std::vector<Block> m_blocks;
    std::vector<Opaque> m_opaque;
    std::unordered_map<std::uint64_t, std::uint64_t> m_counting;
    std::unordered_set<std::uint64_t> m_surplus;
    std::unordered_map<std::uint64_t, std::uint64_t> m_irregularEnds;
    std::uint64_t m_lowestName = UINT64_MAX;
    std::uint64_t m_highestName = 0;
};

} // namespace KP_SDAI
