#include "ValueJson.h"

#include "JsonScalars.h"
#include "ValueWalk.h"

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct Writer : JsonScalars {
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
    Writer writer{{m_out, m_isUtf8}};
    ValueWalk(writer).walk(value, isNamedAggregation);
}

} // namespace kpifc
