#pragma once

#include <KpIfcCore/KpIfcHeader.h>

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace KP_SDAI {

/// The parameters of data sections: none where there is one section only, else a name and a list of schemas.
class DataSections {
public:
    explicit DataSections(const KpIfcHeader& header) : m_schemas(header.schemaIdentifiers()) {}
    /// Takes the opening of the next section, "DATA('a',('IFC2X3'));". Returns what the standard wants there
    /// instead; empty where all is well.
    std::string next(std::string_view opening);

private:
    std::vector<std::string> m_schemas;
    std::unordered_set<std::string> m_names;
    std::size_t m_count = 0;
    bool m_hasUnnamed = false;
};

/// The items of an ANCHOR or a REFERENCE section, "<name>=#1{tag:'x'};" and "#77=<file.stp#name>;".
class SectionItems {
public:
    explicit SectionItems(std::string_view section) : m_isReference(section == "REFERENCE") {}
    /// Takes the next statement, with its semicolon; semicolons may stand inside of angle brackets, too. False where it
    /// is no item, nor may be a part of one.
    bool next(std::string_view statement);
    /// True where the last statement was taken for the start of an item.
    bool isWithin() const { return !m_text.empty(); }

private:
    bool isItem() const;

    bool m_isReference;
    std::string m_text; ///< of the item that has begun
};

/// True for a signature, with its keyword and semicolon: BASE64 and ENDSEC.
bool isSignature(std::string_view statement);

} // namespace KP_SDAI
