#include "PropertyText.h"

#include "JsonText.h"

#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpRx/KcString.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

using Array = KpIfcArray<KpIfcVariant>;
using Kind = KpIfcPropertyValueKind;

template <class T>
std::string numberText(T number) {
    char digits[32];
    return std::string(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

std::string text(const KpIfcVariant& value) {
    if (const double* real = value.getIf<double>()) {
        return numberText(*real);
    }
    if (const int* integer = value.getIf<int>()) {
        return numberText(*integer);
    }
    if (const KpIfcBoolean* boolean = value.getIf<KpIfcBoolean>()) {
        return boolean->isTrue() ? "true" : "false";
    }
    if (const KpIfcLogical* logical = value.getIf<KpIfcLogical>()) {
        constexpr const char* texts[] = {"false", "true", "unknown"};
        return texts[logical->code()];
    }
    if (const KcString* string = value.getIf<KcString>()) {
        return std::string(string->view());
    }
    if (const KpDbObjectId* handle = value.getIf<KpDbObjectId>()) {
        return '#' + std::to_string(handle->instanceName());
    }
    std::string all;
    if (const Array* array = value.getIf<Array>()) {
        for (std::size_t i = 0; i < array->size(); ++i) {
            all += (i ? "; " : "") + text((*array)[i]);
        }
    }
    return all;
}

std::string tableText(const Array& columns) {
    const Array none;
    const Array* defining = columns[0].getIf<Array>();
    const Array* defined = columns[1].getIf<Array>();
    defining = defining ? defining : &none;
    defined = defined ? defined : &none;
    std::string all;
    for (std::size_t i = 0; i < std::max(defining->size(), defined->size()); ++i) {
        all += i ? "; " : "";
        all += (i < defining->size() ? text((*defining)[i]) : "") + ": ";
        all += i < defined->size() ? text((*defined)[i]) : "";
    }
    return all;
}

} // namespace

std::string valueText(const KpIfcPropertyValue& value) {
    const Array* array = value.value.getIf<Array>();
    if (array && value.kind == Kind::bounded) {
        return text((*array)[0]) + " .. " + text((*array)[1]);
    }
    return array && value.kind == Kind::table ? tableText(*array) : text(value.value);
}

void appendValueJson(std::string& out, const KpIfcVariant& value) {
    if (const double* real = value.getIf<double>()) {
        json::appendNumber(out, *real);
    } else if (const KcString* string = value.getIf<KcString>()) {
        json::appendText(out, string->view());
    } else if (const KpDbObjectId* handle = value.getIf<KpDbObjectId>()) {
        out += "{\"ref\":";
        json::appendNumber(out, handle->instanceName());
        out += '}';
    } else if (const Array* array = value.getIf<Array>()) {
        out += '[';
        for (std::size_t i = 0; i < array->size(); ++i) {
            out += i ? "," : "";
            appendValueJson(out, (*array)[i]);
        }
        out += ']';
    } else if (const KpIfcLogical* logical = value.getIf<KpIfcLogical>(); logical && logical->code() == 2) {
        out += "\"UNKNOWN\"";
    } else {
        out += value.isEmpty() ? "null" : text(value);
    }
}

} // namespace kpifc
