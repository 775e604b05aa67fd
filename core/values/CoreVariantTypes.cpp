#include "values/CoreVariantType.h"

#include <KpIfcCore/Consts.h>
#include <KpRx/KcString.h>

#include <functional>
#include <iterator>
#include <string_view>

namespace KP_SDAI::detail {

namespace {

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

} // namespace

const CoreVariantType* asCoreType(const KpIfcVariantType& type) {
    const auto before = std::less<const void*>();
    const bool isOne = !before(&type, std::begin(g_types)) && before(&type, std::end(g_types));
    return isOne ? &static_cast<const CoreVariantType&>(type) : nullptr;
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

KpIfcVariantType* const g_coreDescriptors[] = {
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

} // namespace KP_SDAI::detail
