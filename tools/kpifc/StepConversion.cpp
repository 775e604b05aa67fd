#include "StepConversion.h"

#include "Failure.h"
#include "HeldAttributes.h"
#include "TypeText.h"
#include "Utf8.h"

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpStepText.h>

#include <fmt/format.h>

#include <charconv>

using namespace KP_SDAI;

namespace kpifc {

namespace {

using Kind = KpStepValue::Kind;

/// As spelled, but short enough for a message.
std::string shown(const KpStepValue& value) {
    constexpr std::size_t most = 60;
    const std::string text = value.spelled(); // ASCII: what is not is encoded
    return text.size() <= most ? printable(text) : printable(text.substr(0, most)) + "...";
}

[[noreturn]] void refuse(const std::string& found, const DictionaryInstance& declared) {
    throw Failure(fmt::format("found {}, expected {}", found, valuesText(declared)));
}
[[noreturn]] void refuse(const KpStepValue& value, const DictionaryInstance& declared) {
    refuse(shown(value), declared);
}

/// Reads a number that takes all of a text.
template <class T>
bool parse(std::string_view text, T& number) {
    text.remove_prefix(text.starts_with('+'));
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && behind == end;
}

} // namespace

KpIfcVariant StepConversion::convert(const Value& value, const Type& declared, const KpIfcVariantType* select) const {
    const DictionaryInstance* base = baseType(&declared);
    if (!base) {
        throw Failure("the schema does not declare its type");
    }
    if (const auto* entity = base->as<KpIfcEntityType>()) {
        return reference(value, *entity);
    }
    if (const auto* type = base->as<KpIfcSimpleType>()) {
        return simple(value, *type, declared);
    }
    if (base->as<KpIfcStringType>()) {
        return string(value, declared);
    }
    if (const auto* enumeration = base->as<KpIfcEnumerationType>()) {
        return literal(value, *enumeration, declared);
    }
    if (const auto* aggregation = base->as<KpIfcAggregationType>()) {
        return list(value, *aggregation, select, declared);
    }
    if (base->as<KpIfcSelectType>() && select) {
        return alternative(value, *select, declared);
    }
    refuse(value, declared);
}

KpIfcVariant StepConversion::simple(const Value& value, const KpIfcSimpleType& simple, const Type& declared) const {
    switch (simple.kind()) {
    case kTypeReal: return number(value, declared);
    case kTypeInteger: return wholeNumber(value, declared);
    case kTypeBoolean: return truth(value, false, declared);
    case kTypeLogical: return truth(value, true, declared);
    case kTypeString: return string(value, declared);
    case kTypeBinary: return binary(value, declared);
    default: refuse(value, declared);
    }
}

KpIfcVariant StepConversion::number(const Value& value, const Type& declared) const {
    double real = 0;
    if (value.kind != Kind::number || !parse(value.text, real) || real == Consts::KpRealUnset) {
        refuse(value, declared);
    }
    return real;
}

KpIfcVariant StepConversion::wholeNumber(const Value& value, const Type& declared) const {
    int whole = 0;
    if (value.kind != Kind::number || !parse(value.text, whole) || whole == Consts::KpIntUnset) {
        refuse(value, declared);
    }
    return whole;
}

KpIfcVariant StepConversion::truth(const Value& value, bool isLogical, const Type& declared) const {
    const char code = value.kind == Kind::enumeration && value.text.size() == 1 ? upperAscii(value.text[0]) : ' ';
    if (code != 'T' && code != 'F' && (code != 'U' || !isLogical)) {
        refuse(value, declared);
    }
    if (!isLogical) {
        return KpIfcBoolean(code == 'T');
    }
    return code == 'U' ? KpIfcLogical(KpIfcLogical::Unknown) : KpIfcLogical(code == 'T');
}

KpIfcVariant StepConversion::string(const Value& value, const Type& declared) const {
    if (value.kind != Kind::string || value.text == Consts::KpStringUnset) {
        refuse(value, declared);
    }
    std::string text = value.text;
    if (!m_model.textIsUtf8()) {
        text.clear();
        KpStepText::encode(value.text, text);
    }
    return KpAnsiString(std::string_view(text));
}

KpIfcVariant StepConversion::binary(const Value& value, const Type& declared) const {
    if (value.kind != Kind::binary || value.text.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
        refuse(value, declared);
    }
    return KpAnsiString(std::string_view(value.text));
}

KpIfcVariant StepConversion::literal(const Value& value, const KpIfcEnumerationType& enumeration,
                                     const Type& declared) const {
    if (value.kind == Kind::enumeration) {
        for (const KpAnsiString& literal : enumeration.literals()) {
            if (equalNoCase(value.text.data(), value.text.size(), literal.constStr())) {
                return literal.constStr();
            }
        }
    }
    refuse(value, declared);
}

KpDbObjectId StepConversion::handle(const Value& value, const Type& declared) const {
    std::uint64_t name = 0;
    if (value.kind != Kind::reference || !parse(std::string_view(value.text).substr(1), name)) {
        refuse(value, declared);
    }
    const KpDbObjectId handle = m_model.find(name);
    if (!handle.isDefined()) {
        refuse(value.text + ", which is no instance", declared);
    }
    if (!handle.openObject()) {
        refuse(value.text + ", which could not be understood and is kept as text", declared);
    }
    return handle;
}

KpIfcVariant StepConversion::reference(const Value& value, const KpIfcEntityType& entity) const {
    const KpDbObjectId found = handle(value, entity);
    const KpIfcEntityType& own = *found.openObject()->getInstanceType();
    if (!own.isKindOf(&entity)) {
        refuse(fmt::format("{}, an {}", value.text, own.displayName()), entity);
    }
    return found;
}

KpIfcVariant StepConversion::alternative(const Value& value, const KpIfcVariantType& type, const Type& declared) const {
    KpIfcVariant made;
    KpIfcSelect* const select = type.createVariant(made) ? type.storedSelect(made) : nullptr;
    if (!select) {
        throw Failure(fmt::format("no {} can be made", valuesText(declared)));
    }
    if (value.kind == Kind::reference) {
        const KpDbObjectId found = handle(value, declared);
        if (!select->setHandle(found)) {
            refuse(fmt::format("{}, an {}", value.text, found.openObject()->getInstanceType()->displayName()),
                   declared);
        }
        return made;
    }
    if (value.kind != Kind::typed || value.items.size() != 1 || value.items[0].kind == Kind::unset ||
        !select->underlyingTypeName(KpAnsiString(std::string_view(value.text)))) {
        refuse(value, declared);
    }
    const KpIfcDefinedType* chosen = m_model.schema().findType(value.text);
    if (!chosen || !select->putValue(convert(value.items[0], *chosen, nullptr))) {
        refuse(value, declared);
    }
    return made;
}

KpIfcVariant StepConversion::list(const Value& value, const KpIfcAggregationType& aggregation,
                                  const KpIfcVariantType* select, const Type& declared) const {
    if (value.kind != Kind::list || !aggregation.elementType()) {
        refuse(value, declared);
    }
    KpIfcArray<KpIfcVariant> elements;
    elements.reserve(static_cast<std::uint32_t>(value.items.size()));
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        try {
            elements.append(convert(value.items[i], *aggregation.elementType(), select));
        } catch (const Failure& failure) {
            throw Failure(fmt::format("member {}: {}", i + 1, failure.what()));
        }
    }
    return elements;
}

} // namespace kpifc
