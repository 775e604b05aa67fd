#pragma once

#include "JsonText.h"

#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpStepText.h>

#include <string>
#include <string_view>

namespace kpifc {

/// What writers of values (ValueWalk) that make JSON have in common: the values that are no references and hold no
/// others.
struct JsonScalars {
    std::string& out;
    bool isUtf8; ///< whether texts of the model are UTF-8, else they are encoded as in files

    void null() { out += "null"; }
    void real(double value) { json::appendNumber(out, value); }
    void integer(int value) { json::appendNumber(out, value); }
    void truth(KP_SDAI::KpIfcLogical value) {
        constexpr const char* texts[] = {"false", "true", "\"UNKNOWN\""};
        out += texts[value.code()];
    }
    void text(std::string_view value) { json::appendText(out, isUtf8 ? value : KP_SDAI::KpStepText::decode(value)); }
    void literal(const char* value) { json::appendText(out, value); }
};

} // namespace kpifc
