#include "ValueStep.h"

#include "ValueWalk.h"

#include <KpIfcCore/KpStepText.h>
#include <KpIfcCore/KpTextCase.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct Writer {
    std::string& out;
    bool isUtf8;
    bool isBinary;
    std::size_t typedStart = 0; ///< typed values do not nest
    std::size_t typedValue = 0;

    void null() { out += '$'; }
    void real(double value) {
        if (!std::isfinite(value)) {
            return null();
        }
        char digits[KpStepText::kRealRoom];
        out.append(digits, KpStepText::writeReal(value, digits));
    }
    void integer(int value) { out += std::to_string(value); }
    void truth(KpIfcLogical value) {
        constexpr const char* texts[] = {".F.", ".T.", ".U."};
        out += texts[value.code()];
    }
    void text(std::string_view value) {
        const char quote = isBinary ? '"' : '\'';
        out += quote;
        if (isBinary || (!isUtf8 && KpStepText::isEncoded(value))) {
            out += value;
        } else {
            KpStepText::encode(value, out);
        }
        out += quote;
    }
    void literal(const char* value) {
        out += '.';
        out += value;
        out += '.';
    }
    void reference(const KpDbObjectId& value) {
        out += '#';
        out += std::to_string(value.instanceName());
    }
    void beginTyped(const char* name) {
        typedStart = out.size();
        for (; *name; ++name) {
            out += upperAscii(*name);
        }
        out += '(';
        typedValue = out.size();
    }
    void endTyped() {
        if (std::string_view(out).substr(typedValue) == "$") { // an alternative without a value is no value
            out.resize(typedStart);
            return null();
        }
        out += ')';
    }
    void beginList() { out += '('; }
    void nextItem() {
        if (out.back() != '(') {
            out += ',';
        }
    }
    void endList() { out += ')'; }
};

} // namespace

void ValueStep::attribute(const KpIfcVariant& value, bool isOptional, bool isBinary) {
    Writer writer{m_out, m_isUtf8, isBinary};
    ValueWalk(writer).walk(value, isOptional);
}

} // namespace kpifc
