#include "AttributeValues.h"

#include "Environment.h"
#include "SelectClasses.h"

#include <KpIfcCore/KpIfcOrderedAggrImp.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <memory>
#include <regex>
#include <set>
#include <typeinfo>

using namespace KP_SDAI;

namespace {

/// Opens the stores that classes of selects use.
struct SelectStores : KpIfcSelect {
    using KpIfcSelect::storeBoolean;
    using KpIfcSelect::storeDouble;
    using KpIfcSelect::storeInt;
    using KpIfcSelect::storeLogical;
    using KpIfcSelect::storeString;
};

/// Assignment passes what every change passes; it copies no attribute of the entity itself.
void noteChange(KpIfcEntityBase& instance) {
    instance = KpIfcEntityBase();
}

double realValue(int seed) {
    static constexpr double kValues[] = {1.0 / 3, -0.0, 1e300, -2.5e-300, 123456789.0, 5e-324, 1e6, 0.1};
    const auto index = static_cast<std::size_t>(seed);
    return index % 3 == 0 ? kValues[index / 3 % std::size(kValues)] : seed + 0.5;
}

int integerValue(int seed) {
    static constexpr int kValues[] = {0, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() - 1};
    return seed % 2 == 0 ? kValues[static_cast<std::size_t>(seed) / 2 % std::size(kValues)] : seed;
}

KpAnsiString textValue(int seed) {
    static constexpr const char* kTexts[] = {
        "",
        "plain",
        "it's C:\\dir\\new #12=;/* ('x') */",
        "\xC3\x84tna \xE6\x97\xA5\xE6\x9C\xAC", // two and three bytes of UTF-8 each
        "\xF0\x9D\x84\x9E above the basic plane",
        "line\nbreak\ttab \x7F \xC2\x85",
        "\\X2\\00E9\\X0\\ is a text here, \\S\\d too",
        "$",
        "'",
    };
    const auto index = static_cast<std::size_t>(seed) % std::size(kTexts);
    return KpAnsiString(index == 0 ? "" : (kTexts[index] + std::to_string(seed)).c_str());
}

/// Every name that the text of the schema has, of whatever it is.
std::set<std::string> namesOfTheSchema() {
    std::ifstream file(KP_SOURCE_DIR "/generator/schemas/ifc2x3.schema");
    EXPECT_TRUE(file.is_open());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    static const std::regex kName("Ifc\\w+");
    return {std::sregex_token_iterator(text.begin(), text.end(), kName), std::sregex_token_iterator()};
}

template <class T>
bool assign(KpIfcAggr& aggregate, const std::vector<T>& values) {
    aggregate.createEmpty();
    if (auto* ordered = dynamic_cast<KpIfcOrderedAggrImp<T>*>(aggregate.implementation())) {
        ordered->assign(values.data(), values.size());
    } else if (auto* set = dynamic_cast<KpIfcUnorderedAggrImp<T>*>(aggregate.implementation())) {
        set->assign(values.data(), values.size());
    } else {
        return false;
    }
    EXPECT_EQ(aggregate.size(), values.size());
    return true;
}

template <class T, class Value>
void assignValues(KpIfcAggr& aggregate, std::size_t count, int seed, Value value) {
    std::vector<T> values;
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(value(seed + static_cast<int>(i)));
    }
    EXPECT_TRUE(assign(aggregate, values));
}

} // namespace

std::vector<std::string> alternativesOf(const KpIfcSelect& select) {
    static const std::set<std::string> kNames = namesOfTheSchema();
    const auto count = static_cast<std::size_t>(select.underlyingTypeByName(""));
    std::vector<std::string> names(count);
    for (const std::string& name : kNames) {
        const auto code = static_cast<std::size_t>(select.underlyingTypeByName(name.c_str()));
        if (code < count) {
            names[code] = name;
        }
    }
    return names;
}

AttributeValues::AttributeValues(KpIfcModel& model) : m_model(model) {
    for (const KpIfcEntityType* type : entityTypes(model.schema())) {
        if (!type->isAbstract()) {
            m_targets[type] = {model.create(type)->objectId(), model.create(type)->objectId()};
        }
    }
}

KpDbObjectId AttributeValues::instanceOf(const KpIfcEntityType* type, int which) const {
    if (const auto found = m_targets.find(type); found != m_targets.end()) {
        return found->second[static_cast<std::size_t>(which) % 2];
    }
    for (const KpIfcEntityType* subtype : type->subTypes()) {
        if (const KpDbObjectId handle = instanceOf(subtype, which); !handle.isNull()) {
            return handle;
        }
    }
    return {};
}

const std::vector<std::string>& AttributeValues::alternatives(const KpIfcSelect& select) {
    std::vector<std::string>& names = m_alternatives[typeid(select).name()];
    if (names.empty()) {
        names = alternativesOf(select);
    }
    return names;
}

void AttributeValues::fillSelect(KpIfcSelect& select, int variant) {
    const std::vector<std::string>& names = alternatives(select);
    const std::string& name = names[static_cast<std::size_t>(variant) % names.size()];
    ASSERT_TRUE(select.underlyingTypeName(name.c_str())) << name;
    switch (select.valueKind()) {
    case kTypeEntity:
        EXPECT_TRUE(select.setHandle(instanceOf(m_model.schema().findEntity(name), variant / 2))) << name;
        break;
    case kTypeReal: (select.*&SelectStores::storeDouble)(realValue(variant)); break;
    case kTypeInteger: (select.*&SelectStores::storeInt)(integerValue(variant), kTypeInteger); break;
    case kTypeEnumeration: (select.*&SelectStores::storeInt)(0, kTypeEnumeration); break;
    case kTypeBoolean: (select.*&SelectStores::storeBoolean)(variant % 3 == 0); break;
    case kTypeLogical: (select.*&SelectStores::storeLogical)(static_cast<KpIfcLogical::Code>(variant % 3)); break;
    case kTypeString: (select.*&SelectStores::storeString)(textValue(variant)); break;
    case kTypeAggregate: {
        auto& aggregate = const_cast<KpIfcAggr&>(*select.getAggregate());
        if (aggregate.containerType() == KpIfcAggrContainerType::array) {
            assignValues<double>(aggregate, 2, variant, realValue);
        } else {
            assignValues<int>(aggregate, 3, variant, integerValue);
        }
        break;
    }
    default: FAIL() << name << " has no kind of value";
    }
}

template <class Select>
bool AttributeValues::fillSelects(KpIfcAggr& aggregate, std::size_t count, int variant) {
    if (!dynamic_cast<KpIfcAggrElements<Select>*>(aggregate.implementation())) {
        return false;
    }
    std::vector<Select> values(count);
    for (std::size_t i = 0; i < count; ++i) {
        fillSelect(values[i], variant + static_cast<int>(i));
    }
    if (count == 2 && values[0] == values[1]) { // a select of one alternative
        fillSelect(values[1], variant + 2);
    }
    return assign(aggregate, values);
}

void AttributeValues::fillAggregate(KpIfcAggr& aggregate, const KpIfcAttributeFacts& attribute, int seed) {
    const auto count = static_cast<std::size_t>(std::min(std::max(2, aggregate.lowerBound()), aggregate.upperBound()));
    switch (attribute.aggregate->element) {
    case KpIfcElementKind::real: return assignValues<double>(aggregate, count, seed, realValue);
    case KpIfcElementKind::integer: return assignValues<int>(aggregate, count, seed, integerValue);
    case KpIfcElementKind::string: return assignValues<KpAnsiString>(aggregate, count, seed, textValue);
    case KpIfcElementKind::binary:
        return assignValues<KpAnsiString>(aggregate, count, seed,
                                          [](int i) { return KpAnsiString(i % 2 ? "0F0" : "31FF"); });
    case KpIfcElementKind::reference:
        return assignValues<KpDbObjectId>(aggregate, count, seed,
                                          [&](int i) { return instanceOf(*attribute.target, i); });
    case KpIfcElementKind::select: break;
    }
    const bool filled = [&]<class... Select>(ClassList<Select...>) {
        return (fillSelects<Select>(aggregate, count, seed) || ...);
    }(SelectClasses{});
    EXPECT_TRUE(filled) << attribute.name;
}

int AttributeValues::variants(const KpIfcEntityType& type) {
    const std::unique_ptr<KpIfcEntityBase> instance(type.createInstance());
    std::size_t count = 3;
    for (const KpIfcAttributeFacts* attribute : type.recordFields()) {
        if (attribute->kind == KpIfcFieldKind::enumeration) {
            count = std::max(count, static_cast<std::size_t>(attribute->enumeration->count));
        } else if (attribute->kind == KpIfcFieldKind::select) {
            count = std::max(count, alternatives(attribute->member.select(*instance)).size());
        } else if (attribute->kind == KpIfcFieldKind::aggregate &&
                   attribute->aggregate->element == KpIfcElementKind::select) {
            count = std::max<std::size_t>(count, 97); // what IfcValue has, the largest of all
        }
    }
    return static_cast<int>(count);
}

void AttributeValues::fill(KpIfcEntityBase& instance, int variant) {
    int seed = variant;
    for (const KpIfcAttributeFacts* attribute : instance.getInstanceType()->recordFields()) {
        fill(instance, *attribute, variant, ++seed);
    }
}

void AttributeValues::fill(KpIfcEntityBase& instance, const KpIfcAttributeFacts& attribute, int variant, int seed) {
    noteChange(instance);
    const KpIfcAttributeFacts::Member& member = attribute.member;
    switch (attribute.kind) {
    case KpIfcFieldKind::string: instance.*member.string = textValue(seed); break;
    case KpIfcFieldKind::guid: instance.*member.guid = "0aZ_$' \\5678901234567\x7F"; break;
    case KpIfcFieldKind::real: instance.*member.real = realValue(seed); break;
    case KpIfcFieldKind::integer: instance.*member.integer = integerValue(seed); break;
    case KpIfcFieldKind::boolean: instance.*member.boolean = seed % 2 == 0; break;
    case KpIfcFieldKind::logical: instance.*member.logical = static_cast<KpIfcLogical::Code>(seed % 3); break;
    case KpIfcFieldKind::enumeration: {
        const int code = variant % attribute.enumeration->count;
        std::memcpy(member.enumeration(instance), &code, sizeof code);
        break;
    }
    case KpIfcFieldKind::reference: instance.*member.reference = instanceOf(*attribute.target, seed); break;
    case KpIfcFieldKind::select: fillSelect(member.select(instance), variant); break;
    case KpIfcFieldKind::aggregate: fillAggregate(member.aggregate(instance), attribute, variant); break;
    case KpIfcFieldKind::derived:
    case KpIfcFieldKind::notKept: break;
    }
}
