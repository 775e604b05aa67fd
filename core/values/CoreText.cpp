#include "values/CoreVariantType.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpIfcCore/KpStepText.h>
#include <KpRx/KcString.h>

#include <cmath>
#include <string>
#include <string_view>

namespace KP_SDAI::detail {

static void quote(std::string_view utf8, std::string& out) {
    out += '\'';
    KpStepText::encode(utf8, out);
    out += '\'';
}

bool CoreVariantType::subToString(KcString& out, const void* value, StringFormat format) const {
    if (!value) return false;
    const bool forFiles = format == kFormatStep;
    std::string text;
    const auto number = [&](auto whole) { text = std::to_string(whole); };
    const auto words = [&](std::string_view utf8) { forFiles ? quote(utf8, text) : void(text = utf8); };
    const auto unset = [&] { text = forFiles ? "$" : ""; };
    const auto narrow = [&](const char* chars) {
        if (!chars || std::string_view(chars) == Consts::KpStringUnset) return unset();
        words(settings().get_useUTF8() ? std::string(chars) : KpStepText::decode(chars));
    };
    static constexpr const char* kPlain[] = {"false", "true", "unknown", ""};
    static constexpr const char* kStep[] = {".F.", ".T.", ".U.", "$"};
    const auto truth = [&](unsigned code) { text = forFiles ? kStep[code] : kPlain[code]; };
    switch (m_type) {
    case kInt: {
        const int whole = *static_cast<const int*>(value);
        whole == Consts::KpIntUnset ? unset() : number(whole);
        break;
    }
    case kUnsignedLong: number(*static_cast<const unsigned long*>(value)); break;
    case kTypeCode: number(static_cast<int>(*static_cast<const KpTypeCodeKind*>(value))); break;
    case kDouble: {
        const double real = *static_cast<const double*>(value);
        char room[KpStepText::kRealRoom];
        if (real == Consts::KpRealUnset || !std::isfinite(real))
            unset();
        else
            text.assign(room, KpStepText::writeReal(real, room));
        break;
    }
    case kBool: truth(*static_cast<const bool*>(value)); break;
    case kIfcBoolean: {
        const KpIfcBoolean boolean = *static_cast<const KpIfcBoolean*>(value);
        truth(boolean.isSet() ? boolean.isTrue() : 3u);
        break;
    }
    case kIfcLogical: truth(static_cast<const KpIfcLogical*>(value)->code()); break;
    case kChars: narrow(*static_cast<const char* const*>(value)); break;
    case kAnsiString: narrow(static_cast<const KpAnsiString*>(value)->constStr()); break;
    case kGuid: narrow(static_cast<const KpIfcGUID*>(value)->constStr()); break;
    case kKcString: words(static_cast<const KcString*>(value)->view()); break;
    case kEnumDescription: {
        const char* literal = static_cast<const KpIfcEnumDescription*>(value)->literal;
        if (!literal)
            unset();
        else
            text = forFiles ? '.' + std::string(literal) + '.' : literal;
        break;
    }
    case kHandle: {
        const auto& handle = *static_cast<const KpDbObjectId*>(value);
        handle.isNull() ? unset() : void(text = '#' + std::to_string(handle.instanceName()));
        break;
    }
    default: return false;
    }
    out.assign(text.c_str());
    return true;
}

} // namespace KP_SDAI::detail
