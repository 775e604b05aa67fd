#include "values/CoreVariantType.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpIfcCore/KpStepText.h>
#include <KpRx/KcString.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace KP_SDAI::detail {

namespace {

template <class T>
const T& as(const KpIfcVariant& value) {
    return *static_cast<const T*>(value.data());
}

/// The characters of a text value; null where it is no narrow text or the null pointer.
const char* narrowText(CoreType type, const KpIfcVariant& value) {
    switch (type) {
    case kChars: return as<const char*>(value);
    case kAnsiString: return as<KpAnsiString>(value).constStr();
    case kGuid: return as<KpIfcGUID>(value).constStr();
    default: return nullptr;
    }
}

/// A text that spells a whole number or finite real, and nothing else.
template <class T>
bool parse(std::string_view text, T& number) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    T parsed{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    if (std::is_floating_point_v<T> && !std::isfinite(static_cast<double>(parsed))) return false;
    number = parsed;
    return true;
}

bool asReal(CoreType type, const KpIfcVariant& value, double& real) {
    switch (type) {
    case kInt: real = as<int>(value) == Consts::KpIntUnset ? Consts::KpRealUnset : as<int>(value); return true;
    case kUnsignedLong: real = static_cast<double>(as<unsigned long>(value)); return true;
    case kDouble: real = as<double>(value); return true;
    default: const char* text = narrowText(type, value); return text && parse(text, real);
    }
}

/// A whole number, exactly; reals count where they are whole.
template <class T>
bool asWhole(CoreType type, const KpIfcVariant& value, T& whole) {
    constexpr T lowest = std::numeric_limits<T>::lowest();
    constexpr T highest = std::numeric_limits<T>::max();
    switch (type) {
    case kInt:
        if (std::is_unsigned_v<T> && as<int>(value) < 0) return false;
        whole = static_cast<T>(as<int>(value));
        return true;
    case kUnsignedLong:
        if (as<unsigned long>(value) > static_cast<unsigned long>(highest)) return false;
        whole = static_cast<T>(as<unsigned long>(value));
        return true;
    case kTypeCode: whole = static_cast<T>(as<KpTypeCodeKind>(value)); return true;
    case kDouble: {
        const double real = as<double>(value);
        if (std::is_same_v<T, int> && real == Consts::KpRealUnset) {
            whole = static_cast<T>(Consts::KpIntUnset);
            return true;
        }
        // The highest value of a wide type rounds up to a power of two that it does not reach.
        const double limit = std::ldexp(1.0, std::numeric_limits<T>::digits);
        if (!(real >= static_cast<double>(lowest) && real < limit) || real != std::floor(real)) return false;
        whole = static_cast<T>(real);
        return true;
    }
    default: const char* text = narrowText(type, value); return text && parse(text, whole);
    }
}

bool asLogical(CoreType type, const KpIfcVariant& value, KpIfcLogical& logical) {
    switch (type) {
    case kBool: logical = as<bool>(value); return true;
    case kIfcBoolean: {
        const KpIfcBoolean boolean = as<KpIfcBoolean>(value);
        logical = boolean.isSet() ? KpIfcLogical(boolean.isTrue()) : KpIfcLogical();
        return true;
    }
    case kIfcLogical: logical = as<KpIfcLogical>(value); return true;
    default: return false;
    }
}

bool asText(CoreType type, const KpIfcVariant& value, KpAnsiString& text) {
    if (type == kKcString) {
        const std::string_view utf8 = as<KcString>(value).view();
        if (settings().get_useUTF8()) {
            text = KpAnsiString(utf8);
        } else {
            std::string encoded;
            KpStepText::encode(utf8, encoded);
            text = KpAnsiString(std::string_view(encoded));
        }
        return true;
    }
    if (type == kAnsiString) {
        text = as<KpAnsiString>(value);
        return true;
    }
    const bool isText = type == kChars || type == kGuid;
    const char* const chars = narrowText(type, value);
    if (isText) text = chars ? KpAnsiString(chars) : KpAnsiString::unset();
    return isText;
}

/// The type code of a value of one of the runtime's own types.
KpTypeCodeKind typeCode(CoreType type) {
    switch (type) {
    case kInt:
    case kUnsignedLong: return kTypeInteger;
    case kDouble: return kTypeReal;
    case kBool:
    case kIfcBoolean: return kTypeBoolean;
    case kIfcLogical: return kTypeLogical;
    case kChars:
    case kAnsiString:
    case kKcString:
    case kGuid: return kTypeString;
    case kHandle: return kTypeEntity;
    case kEnumDescription: return kTypeEnumeration;
    case kTypeCode: return kTypeNone;
    default: return kTypeAggregate;
    }
}

template <class From>
void copyElements(const From& from, KpIfcArray<KpIfcVariant>& to) {
    to.reserve(from.length());
    for (const auto& element : from) to.append(KpIfcVariant(element));
}

/// The array of variants that an array stands for.
bool asVariants(CoreType type, const KpIfcVariant& value, KpIfcArray<KpIfcVariant>& variants) {
    switch (type) {
    case kIntArray: copyElements(as<KpIfcArray<int>>(value), variants); return true;
    case kDoubleArray: copyElements(as<KpIfcArray<double>>(value), variants); return true;
    case kStringArray: copyElements(as<KpIfcArray<KpAnsiString>>(value), variants); return true;
    case kHandleArray: copyElements(as<KpIfcArray<KpDbObjectId>>(value), variants); return true;
    case kAggr: {
        const KpIfcAggr* const aggregate = as<KpIfcAggr*>(value);
        if (!aggregate) return false;
        variants.resize(aggregate->size());
        for (std::size_t i = 0; i < aggregate->size(); ++i)
            if (!aggregate->implementation()->getElement(i, variants[i])) return false;
        return true;
    }
    default: return false;
    }
}

/// Every element of an array of variants or of an aggregate as one of type T.
template <class T>
bool asArray(CoreType type, const KpIfcVariant& value, KpIfcVariant& result) {
    KpIfcArray<KpIfcVariant> own;
    const KpIfcArray<KpIfcVariant>* variants = value.getIf<KpIfcArray<KpIfcVariant>>();
    if (!variants && type == kAggr && asVariants(type, value, own)) variants = &own;
    if (!variants) return false;
    KpIfcArray<T> elements(8);
    elements.resize(variants->size());
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (!(*variants)[i].get(elements[i])) return false;
    return give(result, elements);
}

} // namespace

bool CoreVariantType::subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                                     KpIfcVariant& result) const {
    if (&target == &Desc<KpTypeCodeKind>::value()) return m_type != kTypeCode && give(result, typeCode(m_type));
    const CoreVariantType* const known = asCoreType(target);
    if (!known) return false;
    switch (known->coreType()) {
    case kInt: {
        int whole = 0;
        return asWhole(m_type, value, whole) && give(result, whole);
    }
    case kUnsignedLong: {
        unsigned long whole = 0;
        return asWhole(m_type, value, whole) && give(result, whole);
    }
    case kDouble: {
        double real = 0;
        return asReal(m_type, value, real) && give(result, real);
    }
    case kBool: {
        KpIfcLogical logical;
        if (!asLogical(m_type, value, logical) || logical.code() > KpIfcLogical::True) return false;
        return give(result, logical.isTrue());
    }
    case kIfcBoolean: {
        KpIfcLogical logical;
        if (!asLogical(m_type, value, logical) || logical == KpIfcLogical::Unknown) return false;
        return give(result, logical.isSet() ? KpIfcBoolean(logical.isTrue()) : KpIfcBoolean());
    }
    case kIfcLogical: {
        KpIfcLogical logical;
        return asLogical(m_type, value, logical) && give(result, logical);
    }
    case kChars: {
        if (m_type == kKcString && settings().get_useUTF8()) return give(result, as<KcString>(value).utf8Ptr());
        const char* const text = narrowText(m_type, value);
        return text && give(result, text);
    }
    case kAnsiString: {
        KpAnsiString text;
        return asText(m_type, value, text) && give(result, text);
    }
    case kKcString: {
        KpAnsiString text;
        if (!asText(m_type, value, text)) return false;
        const std::string utf8 = settings().get_useUTF8() ? std::string(text.view()) : KpStepText::decode(text.view());
        return give(result, KcString(utf8.c_str(), KcString::Encoding::utf8));
    }
    case kGuid: {
        KpAnsiString text;
        if (!asText(m_type, value, text) || text.length() > KpIfcGUID::kLength) return false;
        return give(result, KpIfcGUID(text.constStr()));
    }
    case kVariantArray: {
        KpIfcArray<KpIfcVariant> variants(8);
        return asVariants(m_type, value, variants) && give(result, variants);
    }
    case kIntArray: return asArray<int>(m_type, value, result);
    case kDoubleArray: return asArray<double>(m_type, value, result);
    case kStringArray: return asArray<KpAnsiString>(m_type, value, result);
    case kHandleArray: return asArray<KpDbObjectId>(m_type, value, result);
    default: return false;
    }
}

} // namespace KP_SDAI::detail
