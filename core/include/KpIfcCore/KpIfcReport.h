#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace KP_SDAI {

enum class KpIfcSeverity : std::uint8_t {
    note,    ///< unusual, fully understood, nothing lost
    warning, ///< something is not as the schema or the standard wants it; what was read is kept all the same
    error    ///< something could not be understood or could not be done
};

/// What kind of finding an entry is.
enum class KpIfcFinding : std::uint8_t {
    unreadableRecord,  ///< a record that cannot be parsed; kept as text
    unknownEntity,     ///< an entity that the schema does not have; kept as text
    complexRecord,     ///< an instance of several partial records; kept as text
    duplicateName,     ///< an instance name used before; the last record counts, the others are kept as text
    attributeCount,    ///< more or fewer parameters than the entity has attributes
    wrongValue,        ///< a value that its attribute cannot hold; its text is kept
    unknownLiteral,    ///< an enumeration literal that the schema does not have; its text is kept
    wrongAlternative,  ///< a typed value that is no alternative of its select; its text is kept
    danglingReference, ///< a reference to no instance; its text is kept
    wrongReference,    ///< a reference to an instance of another entity than declared
    notKept,           ///< a value that this toolkit reads over
    abstractEntity,    ///< an instance of an abstract entity
    textEncoding,      ///< bytes or directives in a text that the standard does not know
    instanceName,      ///< an instance name that is not allowed
    sectionStructure,  ///< sections that are missing, doubled, unknown or in another order
    truncated,         ///< the file ends before its end mark
    trailingText,      ///< text behind the end mark; not part of the file
    header,            ///< a header record that is missing or not as the standard wants it
    notFinite,         ///< a number that files cannot express; written as unset
    spelling,          ///< something that is understood, but spelled otherwise than the standard wants it
    globalId,          ///< a GlobalId that is not of the form of one
    notUnique,         ///< values that another instance has, too, against a rule of uniqueness; reading: GlobalIds only
    missingValue,      ///< no value where the schema wants one; reading: members of aggregates only
    // Those that only checking gives (KpIfcCheck.h).
    aggregateSize,  ///< an aggregate with fewer or more elements than its bounds allow
    repeatedMember, ///< an element that stands twice where the schema wants different ones
    tooLong,        ///< a value that is longer than its type allows
    inverseCount,   ///< fewer or more referrers than an inverse attribute allows
    count_
};

/// The short name of a kind of finding, "unknown-entity".
KPIFCCORE_EXPORT const char* findingName(KpIfcFinding finding);
KPIFCCORE_EXPORT const char* severityName(KpIfcSeverity severity);

/// One finding, with its place in the file: what stands there, what should, and what was made of it.
struct KpIfcReportEntry {
    KpIfcSeverity severity = KpIfcSeverity::note;
    KpIfcFinding finding = KpIfcFinding::unreadableRecord;
    std::uint64_t offset = 0;       ///< bytes from the start of the file
    std::uint64_t line = 0;         ///< from 1; 0 where the finding has no place
    std::uint64_t column = 0;       ///< in bytes, from 1
    std::uint64_t instanceName = 0; ///< 0 where it concerns no instance
    std::string entity;             ///< keyword of the record, where there is one; of header records, too
    std::string attribute;          ///< name of the attribute, where it concerns one
    std::string found;              ///< what stands there, "'abc'" or "fewer parameters"
    std::string expected;           ///< what the standard or the schema wants there, "a number"; may be empty
    std::string done;               ///< what became of it, "its text is kept"; empty where nothing had to be done
    /// Unusual, but as the standard wants it. Such findings are notes.
    bool isAllowed = false;

    /// "found 'abc', expected a number; its text is kept"
    KPIFCCORE_EXPORT std::string message() const;
    /// "12:5: warning: #7 IFCWALL.Name: found 'abc', expected a number; its text is kept"
    KPIFCCORE_EXPORT std::string text() const;
};

/// Everything that reading, writing or checking found. All findings are counted; of each kind the first are listed.
class KPIFCCORE_EXPORT KpIfcReport {
public:
    static constexpr std::size_t kListedPerKind = 100;
    static constexpr std::size_t kAll = static_cast<std::size_t>(-1);

    /// `listedPerKind` findings of each kind are listed.
    explicit KpIfcReport(std::size_t listedPerKind = kListedPerKind) : m_listedPerKind(listedPerKind) {}

    void add(KpIfcReportEntry entry);
    /// Counts findings that are not listed, none of which isAllowed.
    void addUnlisted(KpIfcFinding finding, KpIfcSeverity severity, std::size_t count);
    /// Adds all findings of `later`, which lists as many of each kind, behind those that are here.
    void append(KpIfcReport&& later);
    void clear();
    std::size_t listedPerKind() const { return m_listedPerKind; }
    /// True where the next finding of a kind would be listed.
    bool lists(KpIfcFinding finding) const { return count(finding) < m_listedPerKind; }

    const std::vector<KpIfcReportEntry>& entries() const { return m_entries; }
    std::size_t count(KpIfcSeverity severity) const;
    std::size_t count(KpIfcFinding finding) const;
    std::size_t count(KpIfcFinding finding, KpIfcSeverity severity) const {
        return m_counts[static_cast<std::size_t>(finding)][static_cast<std::size_t>(severity)];
    }
    /// Number of findings that the standard or the schema forbids, however harmless: all but those that isAllowed.
    std::size_t departures() const { return m_departures; }
    /// True where nothing worse than notes was found.
    bool isClean() const { return count(KpIfcSeverity::warning) == 0 && count(KpIfcSeverity::error) == 0; }
    /// False for a file that was opened lazily, until all of it is read: findings are those about what has been read
    /// so far, in the order in which it was touched, and have no lines (0).
    bool isComplete() const { return m_isComplete; }
    void isComplete(bool is) { m_isComplete = is; }
    /// True where the file ended before its end mark.
    bool isTruncated() const { return count(KpIfcFinding::truncated) != 0; }

    /// The listed entries, to be given their lines or another order; for who makes the report.
    std::vector<KpIfcReportEntry>& located() { return m_entries; }

private:
    std::vector<KpIfcReportEntry> m_entries;
    std::size_t m_listedPerKind;
    std::size_t m_departures = 0;
    bool m_isComplete = true;
    std::array<std::array<std::size_t, 3>, static_cast<std::size_t>(KpIfcFinding::count_)> m_counts{};
};

} // namespace KP_SDAI
