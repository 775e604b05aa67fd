#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpRx/KcString.h>

#include <cstring>
#include <string>

namespace KP_SDAI {

KpIfcEnumVariantType::KpIfcEnumVariantType(const wchar_t* displayName, const KpIfcEnumFacts& facts)
    : KpIfcVariantType(displayName, sizeof(int), nullptr, nullptr), m_facts(facts) {
    std::string prefix;
    for (const wchar_t* c = displayName; *c; ++c) prefix += static_cast<char>(*c);
    prefix.resize(prefix.rfind(':') + 1); // all of it but the name; nothing where it is not qualified
    prefix += std::string("k") + facts.name + '_';
    m_constantNames.reserve(static_cast<std::uint32_t>(facts.count) + 1);
    for (int code = 0; code < facts.count; ++code)
        m_constantNames.append(KpAnsiString(std::string_view(prefix + facts.literals[code])));
    m_constantNames.append(KpAnsiString(std::string_view(prefix + "UNSET")));
}

KpIfcEnumVariantType::~KpIfcEnumVariantType() = default;

const KpIfcEnumFacts* KpIfcEnumVariantType::enumeration() const {
    return &m_facts;
}

bool KpIfcEnumVariantType::subEqualTo(const void* a, const void* b) const {
    return std::memcmp(a, b, sizeof(int)) == 0;
}

bool KpIfcEnumVariantType::subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                                          KpIfcVariant& result) const {
    if (value.type() != this) return false;
    int code;
    std::memcpy(&code, value.data(), sizeof code);
    const bool isText = &target == &Desc<KpAnsiString>::value() || &target == &Desc<const char*>::value() ||
                        (&target == &Desc<KpIfcEnumDescription>::value() && code != m_facts.count);
    if (isText)
        result.set(m_facts.text(code));
    else if (&target == &Desc<unsigned long>::value())
        result.set(static_cast<unsigned long>(code));
    else if (&target == &Desc<int>::value())
        result.set(code);
    else
        return false;
    return true;
}

bool KpIfcEnumVariantType::subToString(KcString& out, const void* value, StringFormat) const {
    if (!value) return false;
    int code;
    std::memcpy(&code, value, sizeof code);
    out.assign(m_facts.text(code));
    return true;
}

bool KpIfcEnumVariantType::createVariant(KpIfcVariant& value) const {
    value.setPlain(*this, m_facts.count);
    return true;
}

} // namespace KP_SDAI
