#include "AttributeText.h"
#include "AttributeValues.h"
#include "Environment.h"
#include "SelectClasses.h"

#include <KpIfcCore/KpIfcVariantTypes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <functional>
#include <memory>
#include <type_traits>

using namespace KP_SDAI;

namespace {

/// An explicit attribute, own or inherited; one that is redeclared as derived with the row of the supertype, where its
/// member is.
struct Attribute {
    const KpIfcAttributeDefinition* definition;
    KpIfcAttributeFacts row;
};

using Instance = std::unique_ptr<KpIfcEntityBase>;
using Texts = std::vector<std::string>;

/// Over every entity, abstract ones too: instances of their classes that belong to no model.
class LateBound : public testing::Test {
protected:
    void forEveryEntity(const std::function<void(const KpIfcEntityType&, const std::vector<Attribute>&)>& visit) {
        int entities = 0;
        for (const KpIfcEntityType* type : entityTypes(schema())) {
            std::vector<Attribute> attributes;
            for (const KpIfcAttributeDefinition* definition : type->allAttributes()) {
                const auto* explicitOne = definition->as<KpIfcExplicitAttributeDefinition>();
                if (!explicitOne) {
                    continue;
                }
                attributes.push_back({definition, *explicitOne->facts()});
                if (attributes.back().row.kind == KpIfcFieldKind::notKept) {
                    attributes.back().row.kind = KpIfcFieldKind::boolean; // what stands in its place
                }
            }
            SCOPED_TRACE(type->displayName());
            visit(*type, attributes);
            ++entities;
        }
        EXPECT_EQ(entities, 653);
    }
    Instance filled(const KpIfcEntityType& type, const std::vector<Attribute>& attributes, int variant) {
        Instance instance(type.createInstance());
        int seed = variant;
        for (const Attribute& attribute : attributes) {
            values.fill(*instance, attribute.row, variant, ++seed);
        }
        return instance;
    }
    const KpIfcSchema& schema() const { return file.model()->schema(); }

    KpIfcFile file = emptyFile();
    AttributeValues values{*file.model()};
};

Texts textsOf(KpIfcEntityBase& instance, const std::vector<Attribute>& attributes) {
    Texts texts;
    for (const Attribute& attribute : attributes) {
        texts.push_back(attributeText(instance, attribute.row));
    }
    return texts;
}

template <class T>
bool holds(const KpIfcVariant& value, const T& member) {
    const T* held = value.getIf<T>();
    return held && std::memcmp(held, &member, sizeof member) == 0;
}

/// How the descriptor of pointers to an aggregate is named.
std::string familyName(const Attribute& attribute, const KpIfcAggr& aggregate) {
    const KpIfcAggrContainerType container = aggregate.containerType();
    const std::string family = container == KpIfcAggrContainerType::set    ? "KpIfcSetAggr<"
                               : container == KpIfcAggrContainerType::list ? "KpIfcListAggr<"
                                                                           : "KpIfcArrayAggr<";
    switch (attribute.row.aggregate->element) {
    case KpIfcElementKind::real: return family + "double>*";
    case KpIfcElementKind::integer: return family + "int>*";
    case KpIfcElementKind::string:
    case KpIfcElementKind::binary: return family + "KpAnsiString>*";
    case KpIfcElementKind::reference: return family + "KpDbObjectId>*";
    case KpIfcElementKind::select: break;
    }
    const std::string declared = attribute.definition->typeText(); // "SET [1:?] OF IfcUnit"
    return "::KP_SDAI:: " + family + "IFC2X3::" + declared.substr(declared.rfind(' ') + 1) + ">*";
}

/// True where a value that was got is of the type that such members are handed out as, and is the member or its value.
bool isMember(const KpIfcVariant& value, KpIfcEntityBase& instance, const Attribute& attribute) {
    const KpIfcAttributeFacts::Member& member = attribute.row.member;
    switch (attribute.row.kind) {
    case KpIfcFieldKind::string: return holds(value, (instance.*member.string).constStr());
    case KpIfcFieldKind::guid: return holds(value, instance.*member.guid);
    case KpIfcFieldKind::real: return holds(value, instance.*member.real);
    case KpIfcFieldKind::integer: return holds(value, instance.*member.integer);
    case KpIfcFieldKind::boolean: return holds(value, instance.*member.boolean);
    case KpIfcFieldKind::logical: return holds(value, instance.*member.logical);
    case KpIfcFieldKind::reference: return holds(value, instance.*member.reference);
    case KpIfcFieldKind::enumeration:
        return value.type() == &attribute.row.enumeration->descriptor->value() &&
               std::memcmp(value.data(), member.enumeration(instance), sizeof(int)) == 0;
    case KpIfcFieldKind::select:
        return value.type() == &attribute.row.select->pointer.value() &&
               value.type()->storedSelect(value) == &member.select(instance);
    case KpIfcFieldKind::aggregate: {
        const KpIfcAggr& aggregate = member.aggregate(instance);
        const std::wstring_view name = value.type()->displayName();
        return value.type()->isAggregate() && value.type()->aggregate(value.data()) == &aggregate &&
               std::string(name.begin(), name.end()) == familyName(attribute, aggregate);
    }
    case KpIfcFieldKind::derived:
    case KpIfcFieldKind::notKept: break;
    }
    return false;
}

/// Put, test, get and unset, one attribute after the other; none touches another.
TEST_F(LateBound, EveryAttributeOfEveryEntity) {
    std::size_t count = 0;
    forEveryEntity([&](const KpIfcEntityType& type, const std::vector<Attribute>& attributes) {
        const Instance blank(type.createInstance());
        const Texts unset = textsOf(*blank, attributes);
        for (int variant = 0; variant < 2; ++variant) {
            const Instance source = filled(type, attributes, variant);
            const Texts full = textsOf(*source, attributes);
            const Instance target(type.createInstance());
            Texts expected = unset;
            for (std::size_t i = 0; i < attributes.size(); ++i, ++count) {
                const char* const name = attributes[i].row.name;
                KpIfcVariant value;
                EXPECT_FALSE(target->testAttr(name)) << name;
                ASSERT_TRUE(target->getAttr(name, value)) << name;
                EXPECT_TRUE(isMember(value, *target, attributes[i])) << name << " when unset";
                EXPECT_EQ(source->testAttr(name), full[i] != unset[i]) << name;
                ASSERT_TRUE(source->getAttr(name, value)) << name;
                EXPECT_TRUE(isMember(value, *source, attributes[i])) << name;
                EXPECT_TRUE(target->putAttr(name, value)) << name;
                expected[i] = full[i];
                ASSERT_EQ(textsOf(*target, attributes), expected) << name << " put";
                // Into itself, what it holds
                ASSERT_TRUE(target->getAttr(name, value)) << name;
                EXPECT_TRUE(isMember(value, *target, attributes[i])) << name;
                EXPECT_TRUE(target->putAttr(name, value)) << name;
                ASSERT_EQ(textsOf(*target, attributes), expected) << name << " put into itself";
            }
            for (std::size_t i = 0; i < attributes.size(); ++i) {
                const char* const name = attributes[i].row.name;
                EXPECT_EQ(target->testAttr(attributes[i].definition), full[i] != unset[i]) << name;
                target->unsetAttr(name);
                expected[i] = unset[i];
                ASSERT_EQ(textsOf(*target, attributes), expected) << name << " unset";
                EXPECT_FALSE(target->testAttr(name)) << name;
            }
            EXPECT_EQ(textsOf(*source, attributes), full); // what was got from it was only copied
        }
    });
    RecordProperty("attributes", static_cast<int>(count / 2));
    EXPECT_GT(count / 2, schema().counts().explicitAttributes);
}

/// Every literal of an enumeration, every alternative of a select, alone and as element, where they are declared.
TEST_F(LateBound, EveryLiteralAndAlternative) {
    forEveryEntity([&](const KpIfcEntityType& type, const std::vector<Attribute>& attributes) {
        const Instance source(type.createInstance());
        const Instance target(type.createInstance());
        const int variants = values.variants(type);
        for (const Attribute& attribute : attributes) {
            const KpIfcAttributeFacts& row = attribute.row;
            if (attribute.definition->owner() != &type || (!row.enumeration && !row.select && !row.aggregate)) {
                continue;
            }
            for (int variant = 0; variant < variants; ++variant) {
                values.fill(*source, row, variant, variant);
                KpIfcVariant value;
                ASSERT_TRUE(source->getAttr(row.name, value)) << row.name;
                EXPECT_TRUE(target->putAttr(row.name, value)) << row.name << ' ' << variant;
                ASSERT_EQ(attributeText(*target, row), attributeText(*source, row)) << row.name << ' ' << variant;
            }
        }
    });
}

/// The array of an aggregate's elements in their own type.
KpIfcVariant elementArray(const KpIfcVariant& aggregate) {
    KpIfcVariant result;
    int found = 0;
    const auto tryElement = [&]<class T>(std::type_identity<T>) {
        if constexpr (KpIfcDescribed<KpIfcArray<T>>) {
            KpIfcArray<T> elements;
            if (aggregate.get(elements)) {
                result = elements;
                ++found;
            }
        }
    };
    tryElement(std::type_identity<int>());
    tryElement(std::type_identity<double>());
    tryElement(std::type_identity<KpAnsiString>());
    tryElement(std::type_identity<KpDbObjectId>());
    [&]<class... Select>(ClassList<Select...>) { (tryElement(std::type_identity<Select>()), ...); }(SelectClasses{});
    EXPECT_EQ(found, 1);
    return result;
}

/// Aggregates take arrays of their elements, arrays of variants and handles, and empty ones empty them.
TEST_F(LateBound, EveryAggregateTakesArrays) {
    int aggregates = 0;
    forEveryEntity([&](const KpIfcEntityType& type, const std::vector<Attribute>& attributes) {
        const Instance source = filled(type, attributes, 2);
        for (const Attribute& attribute : attributes) {
            const KpIfcAttributeFacts& row = attribute.row;
            if (!row.aggregate || attribute.definition->owner() != &type) {
                continue;
            }
            ++aggregates;
            const Instance target(type.createInstance());
            const std::string nothing = attributeText(*target, row);
            const std::string expected = attributeText(*source, row);
            KpIfcVariant pointer;
            ASSERT_TRUE(source->getAttr(row.name, pointer));
            KpIfcArray<KpIfcVariant> variants;
            ASSERT_TRUE(pointer.get(variants)) << row.name;
            const bool takesHandles = row.aggregate->element == KpIfcElementKind::reference ||
                                      row.aggregate->element == KpIfcElementKind::select;
            const std::pair<KpIfcVariant, KpIfcVariant> arrays[] = {
                {variants, KpIfcArray<KpIfcVariant>()},
                {elementArray(pointer), KpIfcArray<KpDbObjectId>()},
            };
            for (const auto& [full, empty] : arrays) {
                EXPECT_TRUE(target->putAttr(row.name, full)) << row.name;
                EXPECT_EQ(attributeText(*target, row), expected) << row.name;
                const bool accepted = takesHandles || empty.holds<KpIfcArray<KpIfcVariant>>();
                EXPECT_EQ(target->putAttr(row.name, empty), accepted) << row.name;
                EXPECT_EQ(attributeText(*target, row), accepted ? nothing : expected) << row.name;
                EXPECT_NE(target->testAttr(row.name), accepted) << row.name;
            }
        }
    });
    EXPECT_GT(aggregates, 100);
}

std::string spelled(const char* name, int (*first)(int), int (*second)(int)) {
    std::string text = name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char>((i % 2 ? second : first)(static_cast<unsigned char>(text[i])));
    }
    return text;
}

TEST_F(LateBound, NamesInAnyLetterCaseAndNoOthers) {
    forEveryEntity([&](const KpIfcEntityType& type, const std::vector<Attribute>& attributes) {
        const Instance instance = filled(type, attributes, 0);
        const Texts full = textsOf(*instance, attributes);
        const auto expectUnknown = [&](const std::string& name, bool toRead) {
            KpIfcVariant value = 5;
            if (toRead) {
                EXPECT_FALSE(instance->getAttr(name.c_str(), value)) << name;
                EXPECT_EQ(*value.getIf<int>(), 5) << name;
            }
            for (const KpIfcVariant& given : {KpIfcVariant("1"), KpIfcVariant(1), KpIfcVariant(KpDbObjectId())}) {
                EXPECT_FALSE(instance->putAttr(name.c_str(), given)) << name;
            }
            EXPECT_FALSE(instance->testAttr(name.c_str())) << name;
            instance->unsetAttr(name.c_str());
            EXPECT_EQ(textsOf(*instance, attributes), full) << name;
        };
        expectUnknown("", true);
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            const Attribute& attribute = attributes[i];
            const char* const name = attribute.row.name;
            const Instance blank(type.createInstance());
            for (const std::string& text :
                 {spelled(name, std::tolower, std::tolower), spelled(name, std::toupper, std::toupper),
                  spelled(name, std::toupper, std::tolower)}) {
                KpIfcVariant value;
                ASSERT_TRUE(instance->getAttr(text.c_str(), value)) << text;
                EXPECT_TRUE(isMember(value, *instance, attribute)) << text;
                EXPECT_TRUE(blank->putAttr(text.c_str(), value)) << text;
                EXPECT_EQ(attributeText(*blank, attribute.row), full[i]) << text;
                EXPECT_EQ(blank->testAttr(text.c_str()), instance->testAttr(name)) << text;
                blank->unsetAttr(text.c_str());
                EXPECT_FALSE(blank->testAttr(text.c_str())) << text;
            }
            const std::string whole = name;
            std::string second = whole; // the same length, and the same first, middle and last letter, mostly
            second[1] = static_cast<char>(second[1] ^ 1);
            for (const std::string& other : {whole.substr(0, whole.size() - 1), whole.substr(1), whole + 's', second}) {
                if (!type.findAttribute(other)) {
                    expectUnknown(other, true);
                }
            }
        }
        for (const KpIfcAttributeDefinition* definition : type.allAttributes()) {
            if (definition->kind() == KpIfcAttributeKind::inverseAttribute) {
                expectUnknown(definition->name(), false);
                EXPECT_FALSE(instance->testAttr(definition)) << definition->name();
            } else if (definition->kind() == KpIfcAttributeKind::derivedAttribute) {
                expectUnknown(definition->name(), true);
                EXPECT_FALSE(instance->testAttr(definition)) << definition->name();
            }
        }
    });
}

/// Attributes that a subtype derives have no field in its records; their names still mean the supertype's member.
TEST_F(LateBound, RedeclaredNamesReachTheMemberOfTheSupertype) {
    Texts redeclared;
    forEveryEntity([&](const KpIfcEntityType& type, const std::vector<Attribute>& attributes) {
        for (const Attribute& attribute : attributes) {
            const char* const name = attribute.row.name;
            if (!type.redeclarationOf(*attribute.definition)) {
                continue;
            }
            redeclared.push_back(std::string(type.displayName()) + '.' + name);
            const Instance instance(type.createInstance());
            values.fill(*instance, attribute.row, 0, 0);
            EXPECT_TRUE(instance->testAttr(name)) << name;
            instance->unsetAttr(name);
            EXPECT_FALSE(instance->testAttr(name)) << name;
        }
    });
    EXPECT_THAT(redeclared, testing::UnorderedElementsAre(
                                "IfcSIUnit.Dimensions", "IfcOrientedEdge.EdgeStart", "IfcOrientedEdge.EdgeEnd",
                                "IfcGeometricRepresentationSubContext.WorldCoordinateSystem",
                                "IfcGeometricRepresentationSubContext.CoordinateSpaceDimension",
                                "IfcGeometricRepresentationSubContext.TrueNorth",
                                "IfcGeometricRepresentationSubContext.Precision"));
}

} // namespace
