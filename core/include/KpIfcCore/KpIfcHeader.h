#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpStepValue.h>

#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// One record of the header section.
struct KpIfcHeaderRecord {
    std::string keyword; ///< in upper case: "FILE_NAME"
    std::vector<KpStepValue> parameters;
    friend bool operator==(const KpIfcHeaderRecord&, const KpIfcHeaderRecord&) = default;
};

/// The header section of a file (ISO 10303-21, clause 8): all records in their order, unknown ones too.
///
/// A record stays written as the file had it while it says the same. Texts are UTF-8. Getters of single fields give
/// empty texts where the file has none; setters make the record where it is missing.
class KPIFCCORE_EXPORT KpIfcHeader {
public:
    const std::vector<KpIfcHeaderRecord>& records() const { return m_records; }
    /// The first record of a keyword; null where there is none.
    const KpIfcHeaderRecord* find(std::string_view keyword) const;
    /// Replaces the first record of that keyword, or adds it behind the last.
    void set(KpIfcHeaderRecord record);
    /// Removes the first record of a keyword; false where there is none.
    bool remove(std::string_view keyword);

    std::vector<std::string> description() const { return texts("FILE_DESCRIPTION", 0); }
    std::string implementationLevel() const { return text("FILE_DESCRIPTION", 1); }
    std::string fileName() const { return text("FILE_NAME", 0); }
    std::string timeStamp() const { return text("FILE_NAME", 1); }
    std::vector<std::string> author() const { return texts("FILE_NAME", 2); }
    std::vector<std::string> organization() const { return texts("FILE_NAME", 3); }
    std::string preprocessorVersion() const { return text("FILE_NAME", 4); }
    std::string originatingSystem() const { return text("FILE_NAME", 5); }
    std::string authorization() const { return text("FILE_NAME", 6); }
    std::vector<std::string> schemaIdentifiers() const { return texts("FILE_SCHEMA", 0); }

    /// One field of one of the three records that every file has; `index` counts from 0.
    std::string text(std::string_view keyword, std::size_t index) const;
    /// A field that is a list of texts; a plain text counts as a list of one.
    std::vector<std::string> texts(std::string_view keyword, std::size_t index) const;
    void setText(std::string_view keyword, std::size_t index, std::string text);
    void setTexts(std::string_view keyword, std::size_t index, std::vector<std::string> texts);

    /// The three records that the standard asks for, with empty texts and the given schema.
    static KpIfcHeader standard(std::string schemaIdentifier);

    /// Adds a record as a file has it, with its text there, which it is written with while it says the same.
    void append(KpIfcHeaderRecord record, std::string source);
    /// The text of the record at `index`: the file's own, or written anew; without the semicolon.
    std::string source(std::size_t index) const;

private:
    static constexpr std::size_t kNoOrigin = static_cast<std::size_t>(-1);
    /// A record as it was read.
    struct Original {
        KpIfcHeaderRecord record;
        std::string text;
    };

    KpIfcHeaderRecord& recordFor(std::string_view keyword);

    std::vector<KpIfcHeaderRecord> m_records;
    std::vector<std::size_t> m_origins; ///< of each of them, which of the originals it is or was
    std::vector<Original> m_originals;
};

} // namespace KP_SDAI
