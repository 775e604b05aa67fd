#include "DictionaryTest.h"

#include <KpIfcCore/KpIfcEntityBase.h>

#include <algorithm>
#include <cctype>

using namespace KP_SDAI;
using testing::ElementsAre;

namespace {

class Registration : public DictionaryTest {};

std::string cased(std::string text, int (*change)(int)) {
    for (char& c : text) c = static_cast<char>(change(static_cast<unsigned char>(c)));
    return text;
}

TEST_F(Registration, KeysHaveTheLetterCaseOfTheirKind) {
    for (const Dictionary::Entry& entry : schema().entities().entries())
        EXPECT_EQ(entry.name, cased(dynamic_cast<KpIfcEntityType&>(*entry.object).displayName(), std::toupper));
    for (const Dictionary::Entry& entry : schema().types().entries()) {
        const auto& named = dynamic_cast<const KpIfcDefinedType&>(*entry.object);
        EXPECT_EQ(entry.name, named.name());
        EXPECT_EQ(entry.name,
                  named.enumeration() ? cased(named.displayName(), std::tolower) : std::string(named.displayName()));
    }
}

TEST_F(Registration, EnumerationsStandInByteOrderOfTheirPublishedNames) {
    std::vector<std::string> names;
    for (const auto* named : all<KpIfcDefinedType>(schema().types()))
        if (named->enumeration()) names.push_back(named->displayName());
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_LT(std::ranges::find(names, "IfcBSplineCurveForm"), std::ranges::find(names, "IfcBeamTypeEnum"));
}

TEST_F(Registration, SupertypesComeFirst) {
    std::vector<const KpIfcEntityType*> seen;
    for (const auto* entity : all<KpIfcEntityType>(schema().entities())) {
        if (entity->superType()) {
            EXPECT_NE(std::ranges::find(seen, entity->superType()), seen.end()) << entity->displayName();
        }
        seen.push_back(entity);
    }
}

TEST_F(Registration, TypeCodesTellKindAndNames) {
    for (const auto* entity : all<KpIfcEntityType>(schema().entities())) {
        ASSERT_NE(entity->type(), nullptr);
        EXPECT_EQ(entity->type()->kind(), kTypeEntity);
        EXPECT_THAT(entity->type()->parameters(), ElementsAre(entity->displayName()));
    }
    for (const auto* named : all<KpIfcDefinedType>(schema().types())) {
        if (const KpIfcSelectType* select = named->select()) {
            EXPECT_EQ(select->type()->kind(), kTypeSelect);
            EXPECT_THAT(select->type()->parameters(), ElementsAre(named->name()));
        } else if (const KpIfcEnumerationType* enumeration = named->enumeration()) {
            EXPECT_EQ(enumeration->type()->kind(), kTypeEnumeration);
            std::vector<std::string> parameters{named->name()};
            parameters.insert(parameters.end(), enumeration->literals().begin(), enumeration->literals().end());
            EXPECT_EQ(enumeration->type()->parameters(), parameters);
        }
    }
    for (const auto* named : all<KpIfcDefinedType>(schema().anonymousTypes())) {
        if (!named->aggregation()) continue;
        EXPECT_EQ(named->aggregation()->type()->kind(), kTypeAggregate);
        EXPECT_THAT(named->aggregation()->type()->parameters(), testing::IsEmpty());
    }
}

TEST_F(Registration, NoExplicitAttributeIsRegisteredAsOptional) {
    for (const auto* entity : all<KpIfcEntityType>(schema().entities()))
        for (const auto& attribute : entity->attributes())
            if (const auto* own = attribute->as<KpIfcExplicitAttributeDefinition>()) {
                EXPECT_FALSE(own->isOptional()) << entity->name() << '.' << own->name();
            }
    EXPECT_TRUE(attribute<KpIfcExplicitAttributeDefinition>("IfcRoot", "Name").isOptionalInFiles());
}

TEST_F(Registration, RedeclaredAttributesAreNamedBySupertypeAndAttribute) {
    const struct {
        const char* entity;
        const char* name;
        const char* type;
        const char* supertype;
        const char* redeclared;
    } kRedeclared[] = {
        {"IfcOrientedEdge", "ifcedge_edgestart", "IfcVertex", "IfcEdge", "EdgeStart"},
        {"IfcOrientedEdge", "ifcedge_edgeend", "IfcVertex", "IfcEdge", "EdgeEnd"},
        {"IfcGeometricRepresentationSubContext", "ifcgeometricrepresentationcontext_worldcoordinatesystem",
         "IfcAxis2Placement", "IfcGeometricRepresentationContext", "WorldCoordinateSystem"},
        {"IfcGeometricRepresentationSubContext", "ifcgeometricrepresentationcontext_coordinatespacedimension",
         "IfcDimensionCount", "IfcGeometricRepresentationContext", "CoordinateSpaceDimension"},
        {"IfcGeometricRepresentationSubContext", "ifcgeometricrepresentationcontext_truenorth", "IfcDirection",
         "IfcGeometricRepresentationContext", "TrueNorth"},
        {"IfcGeometricRepresentationSubContext", "ifcgeometricrepresentationcontext_precision", "REAL",
         "IfcGeometricRepresentationContext", "Precision"},
        {"IfcSIUnit", "ifcnamedunit_dimensions", "IfcDimensionalExponents", "IfcNamedUnit", "Dimensions"},
    };
    for (const auto& row : kRedeclared) {
        const auto& derived = attribute<KpIfcDerivedAttributeDefinition>(row.entity, row.name);
        const auto& redeclared = attribute<KpIfcExplicitAttributeDefinition>(row.supertype, row.redeclared);
        EXPECT_EQ(derived.typeText(), row.type) << row.name;
        EXPECT_EQ(derived.redeclaredAttribute(), &redeclared) << row.name;
        EXPECT_EQ(entity(row.entity).redeclarationOf(redeclared), &derived) << row.name;
        EXPECT_EQ(entity(row.supertype).redeclarationOf(redeclared), nullptr) << row.name;
    }
    std::ptrdiff_t count = 0;
    for (const auto* entity : all<KpIfcEntityType>(schema().entities()))
        for (const auto& attribute : entity->attributes())
            if (const auto* derived = attribute->as<KpIfcDerivedAttributeDefinition>())
                count += derived->redeclaredAttribute() != nullptr;
    EXPECT_EQ(count, std::ssize(kRedeclared));
}

TEST_F(Registration, InverseAttributesHaveTheirBounds) {
    constexpr int kOpen = Consts::KpIntUnset;
    const struct {
        const char* entity;
        const char* name;
        int minimum;
        int maximum;
        const char* target;
        const char* inverted; ///< with the entity that declares it
    } kInverse[] = {
        {"IfcObject", "IsDefinedBy", 0, kOpen, "IfcRelDefines", "IfcRelDefines.RelatedObjects"},
        {"IfcObjectDefinition", "HasAssignments", 0, kOpen, "IfcRelAssigns", "IfcRelAssigns.RelatedObjects"},
        {"IfcPropertySetDefinition", "PropertyDefinitionOf", 0, 1, "IfcRelDefinesByProperties",
         "IfcRelDefinesByProperties.RelatingPropertyDefinition"},
        {"IfcPropertySetDefinition", "DefinesType", 0, 1, "IfcTypeObject", "IfcTypeObject.HasPropertySets"},
        {"IfcDimensionCurve", "AnnotatedBySymbols", 0, 2, "IfcTerminatorSymbol", "IfcTerminatorSymbol.AnnotatedCurve"},
        {"IfcObjectPlacement", "PlacesObject", 1, 1, "IfcProduct", "IfcProduct.ObjectPlacement"},
        {"IfcCompositeCurveSegment", "UsingCurves", 1, kOpen, "IfcCompositeCurve", "IfcCompositeCurve.Segments"},
        // The eight that hold one instance, whose target is found by the attribute's name alone.
        {"IfcFeatureElementAddition", "ProjectsElements", kOpen, kOpen, "IfcRelProjectsElement",
         "IfcRelProjectsElement.RelatedFeatureElement"},
        {"IfcGroup", "IsGroupedBy", kOpen, kOpen, "IfcRelAssignsToGroup", "IfcRelAssignsToGroup.RelatingGroup"},
        {"IfcFeatureElementSubtraction", "VoidsElements", kOpen, kOpen, "IfcRelVoidsElement",
         "IfcRelVoidsElement.RelatedOpeningElement"},
        {"IfcTableRow", "OfTable", kOpen, kOpen, "IfcTable", "IfcTable.Rows"},
        {"IfcStructuralActivity", "AssignedToStructuralItem", kOpen, kOpen, "IfcRelConnectsStructuralActivity",
         "IfcRelConnectsStructuralActivity.RelatedStructuralActivity"},
        {"IfcPort", "ContainedIn", kOpen, kOpen, "IfcRelConnectsPortToElement",
         "IfcRelConnectsPortToElement.RelatingPort"},
        {"IfcMaterialLayer", "ToMaterialLayerSet", kOpen, kOpen, "IfcMaterialLayerSet",
         "IfcMaterialLayerSet.MaterialLayers"},
        {"IfcScheduleTimeControl", "ScheduleTimeControlAssigned", kOpen, kOpen, "IfcRelAssignsTasks",
         "IfcRelAssignsTasks.TimeForTask"},
    };
    for (const auto& row : kInverse) {
        SCOPED_TRACE(row.name);
        const auto& inverse = attribute<KpIfcInverseAttributeDefinition>(row.entity, row.name);
        EXPECT_EQ(inverse.minimum(), row.minimum);
        EXPECT_EQ(inverse.maximum(), row.maximum);
        EXPECT_EQ(inverse.isSingleValued(), row.minimum == kOpen);
        EXPECT_EQ(inverse.target(), &entity(row.target));
        EXPECT_THAT(namesOf({inverse.invertedAttribute()}), ElementsAre(row.inverted));
    }
    int singleValued = 0;
    for (const auto* entity : all<KpIfcEntityType>(schema().entities()))
        for (const auto& own : entity->attributes())
            if (const auto* inverse = own->as<KpIfcInverseAttributeDefinition>())
                singleValued += inverse->isSingleValued();
    EXPECT_EQ(singleValued, 8);
}

/// The rows by which instances are read, and the dictionary, are made apart: both must speak of the same attribute.
TEST_F(Registration, RowsOfFactsAgreeWithTheDefinitions) {
    for (const auto* entity : all<KpIfcEntityType>(schema().entities())) {
        const std::unique_ptr<KpIfcEntityBase> instance(entity->createInstance());
        for (const auto& own : entity->attributes()) {
            const auto* definition = own->as<KpIfcExplicitAttributeDefinition>();
            if (!definition) continue;
            SCOPED_TRACE(std::string(entity->displayName()) + '.' + definition->name());
            const KpIfcAttributeFacts* row = definition->facts();
            ASSERT_NE(row, nullptr);
            EXPECT_STREQ(row->name, definition->name());
            const auto* named = definition->domain()->as<KpIfcDefinedType>();
            if (row->kind == KpIfcFieldKind::reference) {
                EXPECT_EQ(*row->target, definition->domain());
            } else if (row->kind == KpIfcFieldKind::enumeration) {
                EXPECT_EQ(row->enumeration, named->enumeration()->facts());
            } else if (row->kind == KpIfcFieldKind::select) {
                // The class of the select knows its dictionary type.
                EXPECT_EQ(row->member.select(*instance).type(), named);
            } else if (row->kind == KpIfcFieldKind::aggregate) {
                EXPECT_EQ(row->aggregate->isSet, named->aggregation()->as<KpIfcSetType>() != nullptr);
                EXPECT_EQ((row->flags & KpIfcAttributeFacts::kDefinedType) == 0, named->isAnonymous());
                if (row->target) {
                    EXPECT_EQ(*row->target, named->aggregation()->elementType());
                }
            }
        }
    }
}

} // namespace
