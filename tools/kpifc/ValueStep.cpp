#include "ValueStep.h"

#include <KpIfcCore/KpStepText.h>
#include <KpIfcCore/KpTextCase.h>

using namespace KP_SDAI;

namespace kpifc {

void ValueStep::real(double value) {
    if (!std::isfinite(value)) {
        return null();
    }
    char digits[KpStepText::kRealRoom];
    m_out.append(digits, KpStepText::writeReal(value, digits));
}

void ValueStep::integer(int value) {
    m_out += std::to_string(value);
}

void ValueStep::truth(KpIfcLogical value) {
    constexpr const char* texts[] = {".F.", ".T.", ".U."};
    m_out += texts[value.code()];
}

void ValueStep::text(std::string_view value) {
    const char quote = m_isBinary ? '"' : '\'';
    m_out += quote;
    if (m_isBinary || (!m_isUtf8 && KpStepText::isEncoded(value))) {
        m_out += value;
    } else {
        KpStepText::encode(value, m_out);
    }
    m_out += quote;
}

void ValueStep::literal(const char* value) {
    m_out += '.';
    m_out += value;
    m_out += '.';
}

void ValueStep::reference(const KpDbObjectId& value) {
    m_out += '#';
    m_out += std::to_string(value.instanceName());
}

void ValueStep::beginTyped(const char* name) {
    m_typedStart = m_out.size();
    for (; *name; ++name) {
        m_out += upperAscii(*name);
    }
    m_out += '(';
    m_typedValue = m_out.size();
}

void ValueStep::endTyped() {
    if (std::string_view(m_out).substr(m_typedValue) == "$") { // an alternative without a value is no value
        m_out.resize(m_typedStart);
        return null();
    }
    m_out += ')';
}

} // namespace kpifc
