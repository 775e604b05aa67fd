#pragma once

#include <KpIfcCore/KpIfcVariant.h>
#include <KpRx/KcString.h>

#include <string>

/// Variants as texts, to be compared by tests.
namespace variant_text {

using namespace KP_SDAI;

using Variants = KpIfcArray<KpIfcVariant>;

inline KcString unicode(const char* utf8) {
    return KcString(utf8, KcString::Encoding::utf8);
}

template <class T>
std::string joined(const KpIfcArray<T>& elements);

/// "type:text", the text as files have it; of arrays, the elements between brackets.
inline std::string textOf(const KpIfcVariant& value) {
    if (value.isEmpty()) return "nothing";
    if (const auto* ints = value.getIf<KpIfcArray<int>>()) return "ints" + joined(*ints);
    if (const auto* doubles = value.getIf<KpIfcArray<double>>()) return "doubles" + joined(*doubles);
    if (const auto* texts = value.getIf<KpIfcArray<KpAnsiString>>()) return "texts" + joined(*texts);
    if (const auto* handles = value.getIf<KpIfcArray<KpDbObjectId>>()) return "handles" + joined(*handles);
    if (const auto* variants = value.getIf<Variants>()) return "variants" + joined(*variants);
    std::string out;
    for (const wchar_t* c = value.type()->displayName(); *c; ++c) out += static_cast<char>(*c);
    KcString text;
    return out + ':' + (value.toString(text, kFormatStep) ? text.utf8Ptr() : "no text");
}

template <class T>
std::string joined(const KpIfcArray<T>& elements) {
    std::string out = "(";
    for (const T& element : elements) out += (out.size() > 1 ? " " : "") + textOf(KpIfcVariant(element));
    return out + ')';
}

template <class T>
const KpIfcVariantType& to() {
    return KpIfcVariantType::Desc<T>::value();
}

} // namespace variant_text
