#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpIfcCore/KpStepText.h>
#include <KpRx/KcString.h>

#include <charconv>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

namespace KP_SDAI {

using namespace detail;

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

template <class T>
bool give(KpIfcVariant& result, const T& value) {
    result.set(value);
    return true;
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

void quote(std::string_view utf8, std::string& out) {
    out += '\'';
    KpStepText::encode(utf8, out);
    out += '\'';
}

/// Descriptor of one of the runtime's own types.
class CoreVariantType final : public KpIfcVariantType {
public:
    constexpr CoreVariantType(CoreType type, const wchar_t* displayName, std::size_t size,
                              const KpIfcMemObjectAllocator* allocator = nullptr, bool onHeap = false)
        : KpIfcVariantType(displayName, size, nullptr, nullptr, allocator, onHeap), m_type(type) {}

    bool isAggregate() const override { return m_type == kAggr; }
    KpDbObjectId reference(const KpIfcVariant& value) const override {
        const KpDbObjectId* handle = value.getIf<KpDbObjectId>();
        return handle ? *handle : KpDbObjectId();
    }
    const KcString* rxObjectValue(const void* value) const override {
        return m_type == kKcString ? static_cast<const KcString*>(value) : nullptr;
    }
    KpIfcAggr* aggregate(const void* value) const override {
        return m_type == kAggr ? *static_cast<KpIfcAggr* const*>(value) : nullptr;
    }
    bool subEqualTo(const void* a, const void* b) const override;
    bool subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value, KpIfcVariant& result) const override;
    bool subToString(KcString& out, const void* value, StringFormat format) const override;
    bool createVariant(KpIfcVariant& value) const override;

private:
    CoreType m_type;
};

template <class T>
inline constexpr typename KpIfcVariantTypeForObject<T>::MemObjectAllocator kAllocator;

// In the order of CoreType.
constinit CoreVariantType g_types[] = {
    {kInt, L"int", sizeof(int)},
    {kUnsignedLong, L"unsigned long", sizeof(unsigned long)},
    {kDouble, L"double", sizeof(double)},
    {kBool, L"bool", sizeof(bool)},
    {kIfcBoolean, L"KpIfcBoolean", sizeof(KpIfcBoolean)},
    {kIfcLogical, L"KpIfcLogical", sizeof(KpIfcLogical)},
    {kChars, L"const char*", sizeof(const char*)},
    {kAnsiString, L"KpAnsiString", sizeof(KpAnsiString), &kAllocator<KpAnsiString>},
    {kKcString, L"KcString", sizeof(KcString), &kAllocator<KcString>, true},
    {kGuid, L"KpIfcGUID", sizeof(KpIfcGUID)},
    {kHandle, L"KpDbObjectId", sizeof(KpDbObjectId)},
    {kTypeCode, L"KpTypeCodeKind", sizeof(KpTypeCodeKind)},
    {kEnumDescription, L"KpIfcEnumDescription", sizeof(KpIfcEnumDescription)},
    {kAggr, L"KpIfcAggr*", sizeof(KpIfcAggr*)},
    {kIntArray, L"KpIfcArray<int>", sizeof(KpIfcArray<int>), &kAllocator<KpIfcArray<int>>},
    {kDoubleArray, L"KpIfcArray<double>", sizeof(KpIfcArray<double>), &kAllocator<KpIfcArray<double>>},
    {kStringArray, L"KpIfcArray<KpAnsiString>", sizeof(KpIfcArray<KpAnsiString>),
     &kAllocator<KpIfcArray<KpAnsiString>>},
    {kHandleArray, L"KpIfcArray<KpDbObjectId>", sizeof(KpIfcArray<KpDbObjectId>),
     &kAllocator<KpIfcArray<KpDbObjectId>>},
    {kVariantArray, L"KpIfcArray<KpIfcVariant>", sizeof(KpIfcArray<KpIfcVariant>),
     &kAllocator<KpIfcArray<KpIfcVariant>>},
};
static_assert(std::size(g_types) == kHandleSet);

constinit KpIfcSetAggrPtrVariantTypePOD<KpIfcSetAggr<KpDbObjectId>*, KpDbObjectId>
    g_handleSet(L"KpIfcSetAggr<KpDbObjectId>*");
constinit KpIfcListAggrPtrVariantTypePOD<KpIfcListAggr<KpDbObjectId>*, KpDbObjectId>
    g_handleList(L"KpIfcListAggr<KpDbObjectId>*");
constinit KpIfcListAggrPtrVariantTypePOD<KpIfcListAggr<KpAnsiString>*, KpAnsiString>
    g_stringList(L"KpIfcListAggr<KpAnsiString>*");
constinit KpIfcListAggrPtrVariantTypePOD<KpIfcListAggr<double>*, double> g_doubleList(L"KpIfcListAggr<double>*");
constinit KpIfcListAggrPtrVariantTypePOD<KpIfcListAggr<int>*, int> g_intList(L"KpIfcListAggr<int>*");
constinit KpIfcArrayAggrPtrVariantTypePOD<KpIfcArrayAggr<double>*, double> g_doubleArray(L"KpIfcArrayAggr<double>*");

template <class T>
bool equalObjects(const void* a, const void* b) {
    return *static_cast<const T*>(a) == *static_cast<const T*>(b);
}

bool CoreVariantType::subEqualTo(const void* a, const void* b) const {
    switch (m_type) {
    case kInt: return equalObjects<int>(a, b);
    case kUnsignedLong: return equalObjects<unsigned long>(a, b);
    case kDouble: return equalObjects<double>(a, b);
    case kBool: return equalObjects<bool>(a, b);
    case kIfcBoolean: return equalObjects<KpIfcBoolean>(a, b);
    case kIfcLogical: return equalObjects<KpIfcLogical>(a, b);
    case kAnsiString: return equalObjects<KpAnsiString>(a, b);
    case kKcString: return equalObjects<KcString>(a, b);
    case kGuid: return equalObjects<KpIfcGUID>(a, b);
    case kHandle: return equalObjects<KpDbObjectId>(a, b);
    case kTypeCode: return equalObjects<KpTypeCodeKind>(a, b);
    case kIntArray: return equalObjects<KpIfcArray<int>>(a, b);
    case kDoubleArray: return equalObjects<KpIfcArray<double>>(a, b);
    case kStringArray: return equalObjects<KpIfcArray<KpAnsiString>>(a, b);
    case kHandleArray: return equalObjects<KpIfcArray<KpDbObjectId>>(a, b);
    case kVariantArray: return equalObjects<KpIfcArray<KpIfcVariant>>(a, b);
    case kChars:
    case kEnumDescription: {
        const char* x = *static_cast<const char* const*>(a);
        const char* y = *static_cast<const char* const*>(b);
        return x == y || (x && y && std::string_view(x) == y);
    }
    default: return false; // pointers to aggregates
    }
}

bool CoreVariantType::subToValueType(const KpIfcVariantType& target, const KpIfcVariant& value,
                                     KpIfcVariant& result) const {
    if (&target == &Desc<KpTypeCodeKind>::value()) return m_type != kTypeCode && give(result, typeCode(m_type));
    const auto before = std::less<const KpIfcVariantType*>();
    if (before(&target, std::begin(g_types)) || !before(&target, std::end(g_types))) return false; // not one of these
    switch (static_cast<const CoreVariantType&>(target).m_type) {
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

bool CoreVariantType::createVariant(KpIfcVariant& value) const {
    switch (m_type) {
    case kInt: return give(value, Consts::KpIntUnset);
    case kUnsignedLong: return give(value, 0ul);
    case kDouble: return give(value, Consts::KpRealUnset);
    case kBool: return give(value, false);
    case kIfcBoolean: return give(value, KpIfcBoolean());
    case kIfcLogical: return give(value, KpIfcLogical());
    case kChars: return give(value, Consts::KpStringUnset);
    case kAnsiString: return give(value, KpAnsiString::unset());
    case kKcString: return give(value, KcString());
    case kGuid: return give(value, KpIfcGUID());
    case kHandle: return give(value, KpDbObjectId());
    case kTypeCode: return give(value, kTypeNone);
    case kEnumDescription: return give(value, KpIfcEnumDescription{nullptr});
    case kAggr: return give(value, static_cast<KpIfcAggr*>(nullptr));
    case kIntArray: return give(value, KpIfcArray<int>());
    case kDoubleArray: return give(value, KpIfcArray<double>());
    case kStringArray: return give(value, KpIfcArray<KpAnsiString>());
    case kHandleArray: return give(value, KpIfcArray<KpDbObjectId>());
    case kVariantArray: return give(value, KpIfcArray<KpIfcVariant>());
    default: return false;
    }
}

} // namespace

KpIfcVariantType* const detail::g_coreDescriptors[] = {
    &g_types[kInt],
    &g_types[kUnsignedLong],
    &g_types[kDouble],
    &g_types[kBool],
    &g_types[kIfcBoolean],
    &g_types[kIfcLogical],
    &g_types[kChars],
    &g_types[kAnsiString],
    &g_types[kKcString],
    &g_types[kGuid],
    &g_types[kHandle],
    &g_types[kTypeCode],
    &g_types[kEnumDescription],
    &g_types[kAggr],
    &g_types[kIntArray],
    &g_types[kDoubleArray],
    &g_types[kStringArray],
    &g_types[kHandleArray],
    &g_types[kVariantArray],
    &g_handleSet,
    &g_handleList,
    &g_stringList,
    &g_doubleList,
    &g_intList,
    &g_doubleArray,
};

} // namespace KP_SDAI
