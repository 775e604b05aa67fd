#include "ValueJson.h"

#include "JsonText.h"
#include "ValueWalk.h"

#include <KpIfcCore/KpStepText.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct Writer {
    std::string& out;
    bool isUtf8;

    void null() { out += "null"; }
    void real(double value) { json::appendNumber(out, value); }
    void integer(int value) { json::appendNumber(out, value); }
    void truth(KpIfcLogical value) {
        constexpr const char* texts[] = {"false", "true", "\"UNKNOWN\""};
        out += texts[value.code()];
    }
    void text(std::string_view value) { json::appendText(out, isUtf8 ? value : KpStepText::decode(value)); }
    void literal(const char* value) {
        out += '"';
        out += value;
        out += '"';
    }
    void reference(const KpDbObjectId& value) {
        if (!value.isDefined()) {
            return null();
        }
        out += "{\"ref\":";
        json::appendNumber(out, value.instanceName());
        out += '}';
    }
    void beginTyped(const char* name) {
        out += "{\"type\":";
        json::appendText(out, name);
        out += ",\"value\":";
    }
    void endTyped() { out += '}'; }
    void beginList() { out += '['; }
    void nextItem() {
        if (out.back() != '[') {
            out += ',';
        }
    }
    void endList() { out += ']'; }
};

} // namespace

void ValueJson::attribute(const KpIfcVariant& value, bool isNamedAggregation) {
    Writer writer{m_out, m_isUtf8};
    ValueWalk(writer).walk(value, isNamedAggregation);
}

} // namespace kpifc
