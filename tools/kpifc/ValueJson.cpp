#include "ValueJson.h"

#include "JsonText.h"

#include <KpIfcCore/KpStepText.h>

using namespace KP_SDAI;

namespace kpifc {

void ValueJson::real(double value) {
    json::appendNumber(m_out, value);
}

void ValueJson::integer(int value) {
    json::appendNumber(m_out, value);
}

void ValueJson::truth(KpIfcLogical value) {
    constexpr const char* texts[] = {"false", "true", "\"UNKNOWN\""};
    m_out += texts[value.code()];
}

void ValueJson::text(std::string_view value) {
    json::appendText(m_out, m_isUtf8 ? value : KpStepText::decode(value));
}

void ValueJson::literal(const char* value) {
    m_out += '"';
    m_out += value;
    m_out += '"';
}

void ValueJson::reference(const KpDbObjectId& value) {
    if (!value.isDefined()) {
        return null();
    }
    m_out += "{\"ref\":";
    json::appendNumber(m_out, value.instanceName());
    m_out += '}';
}

void ValueJson::beginTyped(const char* name) {
    m_out += "{\"type\":";
    json::appendText(m_out, name);
    m_out += ",\"value\":";
}

} // namespace kpifc
