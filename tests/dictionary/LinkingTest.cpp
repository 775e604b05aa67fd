#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcExpressText.h>
#include <KpIfcCore/KpIfcSchemaBuilder.h>

#include <gmock/gmock.h>

#include <functional>

using namespace KP_SDAI;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A schema made by hand; `fill` registers what the case needs.
class HandMade : public KpIfcSchemaBuilder {
public:
    HandMade(KpIfcSchema& filled, std::function<void(HandMade&)> fill)
        : KpIfcSchemaBuilder(&filled, "TEST"), m_fill(std::move(fill)) {}

    KpIfcEntityType* entity(const char* name, const KpIfcEntityType* supertype = nullptr) {
        KpIfcEntityType* type = nullptr;
        KpIfcEntityType::createEntityType(schema, name, true, nullptr, nullptr, type, supertype);
        entityDictionary->putAt(name, type);
        return type;
    }
    void attribute(KpIfcEntityType* owner, const char* name, const char* type) {
        auto* definition = new KpIfcExplicitAttributeDefinition(name, nullptr, false);
        owner->appendAttribute(definition);
        pendingAttributeTypes[definition] = type;
    }
    void derived(KpIfcEntityType* owner, const char* name, const char* type, const char* redeclaredIn) {
        auto* definition = new KpIfcDerivedAttributeDefinition(name, nullptr, nullptr);
        owner->appendAttribute(definition);
        pendingDerivedAttributes[definition] = {type, redeclaredIn, true};
    }
    void inverse(KpIfcEntityType* owner, const char* name, const char* target, const char* inverted) {
        auto* definition = new KpIfcInverseAttributeDefinition(name, owner, nullptr, nullptr, 0, 1, false);
        owner->appendAttribute(definition);
        pendingInverseAttributes[definition] = {target, inverted};
    }
    void select(const char* name, std::initializer_list<KpAnsiString> members) {
        auto* type = new KpIfcSelectType(new KpTypeCode(kTypeSelect));
        typeDictionary->putAt(name, new KpIfcDefinedType(name, type, true));
        pendingSelectMembers[type] = members;
    }
    void list(const char* name, const char* element) {
        auto* type = new KpIfcListType(nullptr, new KpIfcIntegerBound(1), new KpIfcIntegerBound(), false);
        anonymousTypeDictionary->putAt(name, new KpIfcDefinedType(name, type, true));
        pendingElementTypes[type] = element;
    }

protected:
    void buildDictionary() override { m_fill(*this); }

private:
    std::function<void(HandMade&)> m_fill;
};

const KpIfcInverseAttributeDefinition& inverseOf(const KpIfcSchema& schema, const char* entity, const char* name) {
    return dynamic_cast<const KpIfcInverseAttributeDefinition&>(*schema.findEntity(entity)->findAttribute(name));
}

TEST(Linking, FollowsNamesInAnyLetterCaseAndOrder) {
    KpIfcSchema schema;
    HandMade(schema, [](HandMade& made) {
        KpIfcEntityType* path = made.entity("PATH");
        made.attribute(path, "Points", "LIST [1:?] of POINT");
        made.derived(path, "Length", "Real", "");
        KpIfcEntityType* arc = made.entity("ARC", path);
        made.derived(arc, "path_points", "integer", "Path");
        KpIfcEntityType* point = made.entity("POINT");
        made.inverse(point, "Paths", "arc", "points");
        made.select("Any", {"POINT", "path"});
        made.list("list [1:?] of Point", "Point");
    }).build();
    EXPECT_THAT(schema.unresolvedNames(), IsEmpty());
    const KpIfcEntityType& path = *schema.findEntity("Path");
    const KpIfcAttributeDefinition& points = *path.findAttribute("points");
    EXPECT_EQ(points.declarationText(), "LIST [1:?] OF POINT");
    EXPECT_EQ(path.findAttribute("length")->domain(), KpIfcSimpleType::find("real"));
    const auto* redeclared = schema.findEntity("arc")->redeclarationOf(points);
    ASSERT_NE(redeclared, nullptr);
    EXPECT_STREQ(redeclared->displayName(), "Points");
    // The inverted attribute may be declared by a supertype of the target.
    const auto& paths = inverseOf(schema, "POINT", "Paths");
    EXPECT_EQ(paths.target(), schema.findEntity("ARC"));
    EXPECT_EQ(paths.invertedAttribute(), &points);
    EXPECT_EQ(paths.declarationText(), "SET [0:1] OF ARC FOR Points");
    EXPECT_THAT(schema.findType("any")->select()->members(),
                ElementsAre(schema.findEntity("point"), schema.findEntity("path")));
}

TEST(Linking, ReportsEveryNameThatLeadsNowhere) {
    KpIfcSchema schema;
    HandMade(schema, [](HandMade& made) {
        KpIfcEntityType* edge = made.entity("EDGE");
        made.attribute(edge, "Start", "LOSTTYPE");
        made.derived(edge, "Length", "lostreal", "");
        made.derived(edge, "lost_start", "real", "Lost");
        made.derived(edge, "edge_end", "real", "Edge");
        made.inverse(edge, "Loops", "lostloop", "Edges");
        made.inverse(edge, "Self", "edge", "Finish");
        made.inverse(edge, "Computed", "edge", "Length");
        made.select("Any", {"EDGE", "LOSTMEMBER"});
        made.list("list [1:?] of Lost", "Lost");
    }).build();
    EXPECT_THAT(schema.unresolvedNames(),
                ElementsAre("Any: LOSTMEMBER", "EDGE.Computed: edge.Length", "EDGE.Length: lostreal",
                            "EDGE.Loops: lostloop.Edges", "EDGE.Self: edge.Finish", "EDGE.Start: LOSTTYPE",
                            "EDGE.edge_end: Edge", "EDGE.lost_start: Lost", "list [1:?] of Lost: Lost"));
    // What is left can be read all the same.
    const KpIfcEntityType& edge = *schema.findEntity("EDGE");
    EXPECT_EQ(edge.findAttribute("Start")->declarationText(), "?");
    EXPECT_EQ(edge.findAttribute("Loops")->declarationText(), "SET [0:1] OF ? FOR ?");
    EXPECT_THAT(schema.findType("Any")->select()->members(), ElementsAre(&edge));
    EXPECT_EQ(expressText(schema.anonymousTypes().at("list [1:?] of Lost")), "LIST [1:?] OF ?");
}

TEST(Linking, FindsTheTargetOfAnInverseByItsAttributeAlone) {
    KpIfcSchema schema;
    HandMade(schema, [](HandMade& made) {
        KpIfcEntityType* port = made.entity("PORT");
        made.inverse(port, "Holder", "", "Port");
        made.inverse(port, "Connection", "connects", "Port");
        made.attribute(made.entity("CONNECTS"), "Port", "PORT");  // named by another inverse of the port
        made.attribute(made.entity("STRANGER"), "Port", "OTHER"); // over another type
        made.entity("OTHER");
        made.attribute(made.entity("HOLDS"), "port", "list [1:?] of PORT");
        made.list("list [1:?] of Port", "Port");
    }).build();
    EXPECT_THAT(schema.unresolvedNames(), IsEmpty());
    EXPECT_EQ(inverseOf(schema, "Port", "Holder").target(), schema.findEntity("HOLDS"));
    EXPECT_EQ(inverseOf(schema, "Port", "Connection").target(), schema.findEntity("CONNECTS"));
}

TEST(Linking, ReportsATargetThatCouldBeAnyOfSeveral) {
    KpIfcSchema schema;
    HandMade(schema, [](HandMade& made) {
        made.inverse(made.entity("PORT"), "Holder", "", "Port");
        made.attribute(made.entity("A"), "Port", "PORT");
        made.attribute(made.entity("B"), "Port", "PORT");
    }).build();
    EXPECT_THAT(schema.unresolvedNames(), ElementsAre("PORT.Holder: .Port"));
    EXPECT_EQ(inverseOf(schema, "Port", "Holder").target(), nullptr);
}

TEST(Linking, FlattensEachMemberOnceEvenWhereSelectsNameEachOther) {
    KpIfcSchema schema;
    HandMade(schema, [](HandMade& made) {
        for (const char* name : {"A", "B", "C"}) made.entity(name);
        made.select("Outer", {"B", "Inner", "A"});
        made.select("Inner", {"A", "Outer", "C", "B"});
    }).build();
    std::vector<std::string> names;
    for (const KpIfcNameType* member : schema.findType("Outer")->select()->flattenedMembers())
        names.push_back(member->name());
    EXPECT_THAT(names, ElementsAre("B", "A", "C"));
}

} // namespace
