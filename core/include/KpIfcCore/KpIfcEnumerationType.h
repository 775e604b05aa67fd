#pragma once

#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <list>
#include <vector>

namespace KP_SDAI {

/// What an enumeration's name stands for: its literals.
class KPIFCCORE_EXPORT KpIfcEnumerationType : public DictionaryInstance {
public:
    /// Takes over the type code (the name in lower case, then every literal) and copies the literals.
    KpIfcEnumerationType(KpTypeCode* code, const std::list<KpAnsiString>& literals);
    /// Takes over the literals, too.
    KpIfcEnumerationType(KpTypeCode* code, std::list<KpAnsiString>&& literals);
    ~KpIfcEnumerationType() override;

    /// In upper case and schema order; the code of a literal is its place.
    const std::vector<KpAnsiString>& literals() const { return m_literals; }

    /// Attaches the constant row of the module; it outlives the type.
    void facts(const KpIfcEnumFacts* facts) { m_facts = facts; }
    /// Null where none was attached.
    const KpIfcEnumFacts* facts() const { return m_facts; }

private:
    std::vector<KpAnsiString> m_literals;
    const KpIfcEnumFacts* m_facts = nullptr;
};

} // namespace KP_SDAI
