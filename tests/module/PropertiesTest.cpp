#include "../dictionary/SchemaFile.h"
#include "Environment.h"

#include <IFC2X3/IfcBuilding.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcProperty.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpIfcSettings.h>
#include <KpRx/KcString.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

using namespace KP_SDAI;
using schema_file::Attribute;
using testing::ElementsAre;

namespace {

template <class T>
std::wstring nameOf() {
    return KpIfcVariantType::Desc<T>::value().displayName();
}

/// Which descriptors attributes have, from the text of their types in the schema file alone.
class ExpectedDescriptors {
public:
    explicit ExpectedDescriptors(const schema_file::Schema& schema) {
        for (const schema_file::Entity& entity : schema.entities) m_entities.insert(entity.name);
        for (const schema_file::Type& type : schema.types) m_types[type.name] = &type;
    }

    std::wstring of(const Attribute& attribute) const {
        if (attribute.kind == Attribute::Kind::inverse) return nameOf<KpIfcArray<KpDbObjectId>>();
        return of(attribute.type);
    }

private:
    using Kind = schema_file::Type::Kind;

    std::wstring of(const std::string& type) const {
        if (const std::size_t place = type.find(" OF "); place != std::string::npos) {
            const std::size_t unique = type.find(" UNIQUE ");
            return arrayOf(of(unique == std::string::npos ? type.substr(place + 4) : type.substr(unique + 8)));
        }
        if (m_entities.contains(type)) return nameOf<KpDbObjectId>();
        if (type == "IfcGloballyUniqueId") return nameOf<KpIfcGUID>();
        if (const auto named = m_types.find(type); named != m_types.end()) {
            if (named->second->kind == Kind::defined) return of(named->second->type);
            return L"IFC2X3::" + std::wstring(type.begin(), type.end());
        }
        if (type.starts_with("STRING") || type.starts_with("BINARY")) return nameOf<KpAnsiString>();
        if (type == "REAL" || type == "NUMBER") return nameOf<double>();
        if (type == "INTEGER") return nameOf<int>();
        if (type == "BOOLEAN") return nameOf<KpIfcBoolean>();
        return type == "LOGICAL" ? nameOf<KpIfcLogical>() : L"unknown type";
    }

    static std::wstring arrayOf(const std::wstring& element) {
        if (element == nameOf<KpDbObjectId>()) return nameOf<KpIfcArray<KpDbObjectId>>();
        if (element == nameOf<double>()) return nameOf<KpIfcArray<double>>();
        if (element == nameOf<int>()) return nameOf<KpIfcArray<int>>();
        if (element == nameOf<KpAnsiString>()) return nameOf<KpIfcArray<KpAnsiString>>();
        return L"SDAI_NAMESPACE_PFX KpIfcArray<" + element + L">";
    }

    std::set<std::string> m_entities;
    std::map<std::string, const schema_file::Type*> m_types;
};

/// The attributes of an entity that have properties: redeclared explicit ones, explicit ones, inverse ones.
std::vector<Attribute> propertiesOf(const schema_file::Entity& entity, const schema_file::Schema& schema) {
    std::vector<Attribute> all;
    for (const Attribute& attribute : entity.attributes) {
        if (attribute.kind != Attribute::Kind::derived || attribute.redeclaredIn.empty()) continue;
        for (const schema_file::Entity& supertype : schema.entities) {
            if (supertype.name != attribute.redeclaredIn) continue;
            for (const Attribute& own : supertype.attributes) {
                if (own.name == attribute.name && own.kind == Attribute::Kind::explicitAttribute) all.push_back(own);
            }
        }
    }
    for (const auto kind : {Attribute::Kind::explicitAttribute, Attribute::Kind::inverse}) {
        for (const Attribute& attribute : entity.attributes) {
            if (attribute.kind == kind) all.push_back(attribute);
        }
    }
    return all;
}

TEST(Properties, OfEveryEntityAreTheAttributesThatTheSchemaFileDeclares) {
    const KpIfcFile file = emptyFile();
    const schema_file::Schema schema = schema_file::readIfc2x3();
    const ExpectedDescriptors descriptors(schema);
    std::size_t collections = 0;
    std::size_t count = 0;
    for (const schema_file::Entity& entity : schema.entities) {
        const KpIfcEntityType* type = file.model()->schema().findEntity(entity.name);
        ASSERT_TRUE(type) << entity.name;
        std::vector<std::wstring> expected;
        for (const Attribute& attribute : propertiesOf(entity, schema)) {
            expected.push_back(std::wstring(attribute.name.begin(), attribute.name.end()) + L": " +
                               descriptors.of(attribute));
        }
        const KpIfcPropertyCollection& properties = type->properties();
        std::vector<std::wstring> found;
        for (std::size_t i = 0; i < properties.size(); ++i) {
            const std::string_view name = properties[i].name().view();
            found.push_back(std::wstring(name.begin(), name.end()) + L": " + properties[i].type()->displayName());
            EXPECT_EQ(properties[i].entityType(), type);
        }
        EXPECT_EQ(found, expected) << entity.name;
        collections += !found.empty();
        count += found.size();
    }
    EXPECT_EQ(collections, 523u);
    EXPECT_EQ(count, 1320u + 115 + 7);
}

std::vector<std::string> namesOf(const KpIfcFile& file, const char* entity) {
    const KpIfcPropertyCollection& properties = file.model()->schema().findEntity(entity)->properties();
    std::vector<std::string> names;
    for (std::size_t i = 0; i < properties.size(); ++i) names.emplace_back(properties[i].name().constStr());
    return names;
}

TEST(Properties, OrderWhereASubtypeRedeclares) {
    const KpIfcFile file = emptyFile();
    EXPECT_THAT(namesOf(file, "IfcSIUnit"), ElementsAre("Dimensions", "Prefix", "Name"));
    EXPECT_THAT(namesOf(file, "IfcObjectDefinition"),
                ElementsAre("HasAssignments", "IsDecomposedBy", "Decomposes", "HasAssociations"));
    EXPECT_THAT(namesOf(file, "IfcCartesianPoint"), ElementsAre("Coordinates"));
}

TEST(Properties, OnlyTheHierarchyHasFeaturesAndHoldsCollections) {
    const KpIfcFile file = emptyFile();
    std::vector<std::string> hierarchy;
    for (const KpIfcEntityType* type : entityTypes(file.model()->schema())) {
        for (std::size_t i = 0; i < type->properties().size(); ++i) {
            const KpIfcProperty& property = type->properties()[i];
            EXPECT_FALSE(property.isCollectionEditable());
            if (property.kind() == kSimpleProperty) {
                EXPECT_TRUE(property.propertyFeatures().empty()) << type->name() << '.' << property.name().constStr();
                continue;
            }
            EXPECT_EQ(property.kind(), kCollectionProperty);
            hierarchy.push_back(std::string(type->displayName()) + '.' + property.name().constStr());
            ASSERT_EQ(property.propertyFeatures().size(), 2u);
            EXPECT_TRUE(dynamic_cast<const KpIfcDispAsPropFeature*>(property.propertyFeatures()[0]));
            EXPECT_TRUE(dynamic_cast<const KpIfcHierarchicalPropFeature*>(property.propertyFeatures()[1]));
        }
    }
    EXPECT_THAT(hierarchy,
                ElementsAre("IfcObjectDefinition.IsDecomposedBy", "IfcSpatialStructureElement.ContainsElements"));
}

const KpIfcProperty& property(const KpIfcEntityBase& instance, const char* name) {
    return *instance.getInstanceType()->findProperty(name);
}

constexpr const char* kRecords = "#1=IFCWALL('0123456789012345678901',$,'old',$,$,$,$,$);\n"
                                 "#2=IFCBUILDINGSTOREY('1123456789012345678901',$,'1st',$,$,$,$,$,.ELEMENT.,2.5);\n"
                                 "#3=IFCRELCONTAINEDINSPATIALSTRUCTURE('2123456789012345678901',$,$,$,(#1,#6),#2);\n"
                                 "#4=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);\n"
                                 "#5=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('oak'),#4);\n"
                                 "#6=IFCSLAB('3123456789012345678901',$,$,$,$,$,$,$,.FLOOR.);\n"
                                 "#7=IFCRELAGGREGATES('4123456789012345678901',$,$,$,#2,(#6));\n";

/// Every property of every instance gives a value of its type, which it takes back without a change of the file; and
/// reading changes nothing.
TEST(Properties, TakeWhatTheyGive) {
    KpIfcFile file = openedRecords(kRecords);
    std::size_t put = 0;
    std::size_t fields = 0;
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        for (const KpIfcProperty* each : instance->getInstanceType()->allProperties()) {
            KpIfcVariant value;
            if (each->kind() == kCollectionProperty) continue;
            const KP::ErrorStatus status = each->getAttribute(instance, value);
            EXPECT_FALSE(instance->isChanged()) << each->name().constStr();
            if (status != KP::eOk) { // redeclared
                EXPECT_EQ(each->name(), "Dimensions");
                continue;
            }
            const bool isText = each->type() == &KpIfcVariantType::Desc<KpAnsiString>::value();
            EXPECT_EQ(value.type(), isText ? &KpIfcVariantType::Desc<KcString>::value() : each->type());
        }
    }
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        fields += instance->getInstanceType()->recordFields().size();
        for (const KpIfcProperty* each : instance->getInstanceType()->allProperties()) {
            KpIfcVariant value;
            if (each->getAttribute(instance, value) != KP::eOk) continue; // what is unset is put as unset
            put += each->putAttribute(instance, value) == KP::eOk;
        }
    }
    EXPECT_EQ(savedRecords(file), kRecords);
    EXPECT_EQ(put, fields); // what is redeclared, through the property of the supertype
}

struct Refused {
    const char* what;
    std::uint64_t instance;
    const char* property;
    KpIfcVariant value;
};

TEST(Properties, RefuseWhatDoesNotFit) {
    KpIfcFile file = openedRecords(kRecords);
    const KcString text("x", KcString::Encoding::utf8);
    const KpIfcArray<KpDbObjectId> handles{file.model()->find(1)};
    const Refused cases[] = {
        {"an integer for a real", 2, "Elevation", 3},
        {"a text for a real", 2, "Elevation", text},
        {"no value", 2, "Elevation", KpIfcVariant()},
        {"a narrow text", 1, "Name", KpAnsiString("x")},
        {"characters", 1, "Name", "x"},
        {"a text for a GlobalId", 1, "GlobalId", text},
        {"a text for an enumeration", 2, "CompositionType", text},
        {"a text for a select", 5, "NominalValue", text},
        {"a handle for an aggregate", 3, "RelatedElements", file.model()->find(1)},
        {"inverse", 1, "ContainedInStructure", handles},
        {"redeclared", 4, "Dimensions", KpDbObjectId()},
        {"a collection", 2, "ContainsElements", handles},
    };
    for (const Refused& refused : cases) {
        KpIfcEntityBase* instance = file.model()->find(refused.instance).openObject();
        EXPECT_EQ(property(*instance, refused.property).putAttribute(instance, refused.value), KP::eRefused)
            << refused.what;
        EXPECT_FALSE(instance->isChanged()) << refused.what;
    }
    // An instance that has no such attribute.
    KpIfcEntityBase* wall = file.model()->find(1).openObject();
    KpIfcVariant value(7);
    const KpIfcProperty& elevation = property(*file.model()->find(2).openObject(), "Elevation");
    EXPECT_EQ(elevation.getAttribute(wall, value), KP::eRefused);
    EXPECT_EQ(elevation.putAttribute(wall, 1.5), KP::eRefused);
    EXPECT_EQ(value, KpIfcVariant(7));
    EXPECT_EQ(savedRecords(file), kRecords);
}

TEST(Properties, StatusesWithoutInstanceAndOfModelsThatMayNotBeWritten) {
    KpIfcFile file = openedRecords(kRecords);
    KpIfcEntityBase* storey = file.model()->find(2).openObject();
    const KpIfcProperty& elevation = property(*storey, "Elevation");
    const KpIfcProperty& contained = property(*storey, "ContainsElements");
    KpIfcVariant value(7);
    KpIfcArray<KpDbObjectId> members{file.model()->find(1)};
    std::uint32_t count = 9;
    EXPECT_EQ(elevation.getAttribute(nullptr, value), KP::eRefused);
    EXPECT_EQ(elevation.putAttribute(nullptr, 1.), KP::eRefused);
    EXPECT_EQ(contained.getAttribute(nullptr, value), KP::eRefused);
    EXPECT_EQ(contained.getAttribute(storey, value), KP::eRefused);
    EXPECT_EQ(contained.getCollection(nullptr, members), KP::eNullEntity);
    EXPECT_EQ(contained.countCollection(nullptr, count), KP::eNullEntity);
    EXPECT_EQ(elevation.getCollection(storey, members), KP::eRefused);
    EXPECT_EQ(elevation.countCollection(storey, count), KP::eRefused);
    EXPECT_EQ(value, KpIfcVariant(7));
    EXPECT_EQ(members.size(), 1u);
    EXPECT_EQ(count, 9u);

    file.model()->mode(kReadOnly);
    EXPECT_EQ(elevation.putAttribute(storey, 1.), KP::eRefused);
    EXPECT_EQ(elevation.getAttribute(storey, value), KP::eOk);
    EXPECT_EQ(value, KpIfcVariant(2.5));
    EXPECT_EQ(contained.getCollection(storey, members), KP::eOk);
    EXPECT_FALSE(storey->isChanged());
}

TEST(Properties, CollectionsHoldTheOtherEndsOfRelations) {
    KpIfcFile file = openedRecords(kRecords);
    const KpIfcModel& model = *file.model();
    const KpIfcEntityBase* storey = model.find(2).openObject();
    KpIfcArray<KpDbObjectId> members;
    std::uint32_t count = 0;
    EXPECT_EQ(property(*storey, "ContainsElements").getCollection(storey, members), KP::eOk);
    EXPECT_THAT(members, ElementsAre(model.find(1), model.find(6)));
    EXPECT_EQ(property(*storey, "ContainsElements").countCollection(storey, count), KP::eOk);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(property(*storey, "IsDecomposedBy").getCollection(storey, members), KP::eOk);
    EXPECT_THAT(members, ElementsAre(model.find(6)));
    // Looking is no change, neither of the object nor of the relation.
    for (const KpIfcEntityBase* instance : model.instances()) EXPECT_FALSE(instance->isChanged());
}

/// Beyond ASCII, beyond 16 bits, and what has a meaning in encoded texts.
TEST(Properties, TextsComeBackAsTheyWerePut) {
    const bool former = settings().get_useUTF8();
    for (const bool useUtf8 : {true, false}) {
        settings().set_useUTF8(useUtf8);
        KpIfcFile file = openedRecords(kRecords);
        KpIfcEntityBase* wall = file.model()->find(1).openObject();
        IFC2X3::IfcWall own; // belongs to no model
        for (const char* utf8 : {"Tür \u00e9", "\u6728\u306e\u58c1", "\U0001F3E0", "it's \\X2\\ \\ done", ""}) {
            const KcString text(utf8, KcString::Encoding::utf8);
            for (KpIfcEntityBase* instance : {wall, static_cast<KpIfcEntityBase*>(&own)}) {
                KpIfcVariant value;
                EXPECT_EQ(property(*wall, "Name").putAttribute(instance, text), KP::eOk);
                EXPECT_EQ(property(*wall, "Name").getAttribute(instance, value), KP::eOk);
                EXPECT_EQ(value, KpIfcVariant(text)) << utf8;
            }
        }
        const KcString text("Tür", KcString::Encoding::utf8);
        property(*wall, "Name").putAttribute(wall, text);
        EXPECT_EQ(static_cast<IFC2X3::IfcWall*>(wall)->getName().view(), useUtf8 ? "Tür" : "T\\X2\\00FC\\X0\\r");
        EXPECT_NE(savedRecords(file).find("'T\\X2\\00FC\\X0\\r'"), std::string::npos);
    }
    settings().set_useUTF8(former);
}

} // namespace
