#include <KpIfcCore/KpIfcSchema.h>
#include <KpIfcCore/KpIfcSchemaBuilder.h>
#include <KpIfcCore/KpIfcTypes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace KP_SDAI;

class Watched : public DictionaryInstance {
public:
    explicit Watched(int& alive) : m_alive(alive) { ++m_alive; }
    ~Watched() override { --m_alive; }

private:
    int& m_alive;
};

TEST(Dictionary, FindsNamesInAnyAsciiCase) {
    int alive = 0;
    Dictionary dictionary;
    EXPECT_EQ(dictionary.at("IfcWall"), nullptr);
    auto* wall = new Watched(alive);
    auto* standard = new Watched(alive);
    auto* umlaut = new Watched(alive);
    dictionary.putAt("IfcWall", wall);
    dictionary.putAt("IfcWallStandardCase", standard);
    dictionary.putAt("Ifc\xC3\x84", umlaut);
    EXPECT_EQ(dictionary.at("IFCWALL"), wall);
    EXPECT_EQ(dictionary.at("ifcwallSTANDARDcase"), standard);
    EXPECT_EQ(dictionary.at(std::string_view("IfcWallStandardCase", 7)), wall);
    EXPECT_EQ(dictionary.at("IfcWal"), nullptr);
    EXPECT_EQ(dictionary.at("IfcWalls"), nullptr);
    EXPECT_EQ(dictionary.at(""), nullptr);
    EXPECT_EQ(dictionary.at("IFC\xC3\x84"), umlaut);
    EXPECT_EQ(dictionary.at("IFC\xC3\xA4"), nullptr);
}

TEST(Dictionary, AnObjectOfTheSameNameIsReplaced) {
    int alive = 0;
    {
        Dictionary dictionary;
        dictionary.putAt("first", new Watched(alive));
        dictionary.putAt("IfcWall", new Watched(alive));
        auto* later = new Watched(alive);
        dictionary.putAt("IFCWALL", later);
        EXPECT_EQ(alive, 2);
        EXPECT_EQ(dictionary.count(), 2u);
        EXPECT_EQ(dictionary.at("ifcwall"), later);
        EXPECT_EQ(dictionary.entries()[1].name, "IFCWALL");
        EXPECT_EQ(dictionary.entries()[1].object.get(), later);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Dictionary, HoldsManyNamesInTheirOrder) {
    int alive = 0;
    Dictionary dictionary;
    for (int i = 0; i < 5000; ++i) dictionary.putAt(("Ifc" + std::to_string(i)).c_str(), new Watched(alive));
    ASSERT_EQ(dictionary.count(), 5000u);
    for (std::size_t i = 0; i < 5000; ++i) {
        ASSERT_EQ(dictionary.entries()[i].name, "Ifc" + std::to_string(i));
        ASSERT_EQ(dictionary.at("iFC" + std::to_string(i)), dictionary.entries()[i].object.get());
    }
    EXPECT_EQ(dictionary.at("Ifc5000"), nullptr);
}

/// References before and after what they refer to, in another case than declared, and one that leads nowhere.
class TestBuilder : public KpIfcSchemaBuilder {
public:
    explicit TestBuilder(KpIfcSchema& filled) : KpIfcSchemaBuilder(&filled, "TEST") {}

protected:
    void buildDictionary() override {
        initSchemaVersion(kIfcSchemaMajor2, kIfcSchemaMinor3);
        define("Positive", "LENGTH");
        define("Length", "Real");
        define("Width", "Length");
        define("Code", "string(22)fixed");
        define("Lost", "nowhere");
        anonymousTypeDictionary->putAt("string(22)fixed",
                                       new KpIfcDefinedType("string(22)fixed", new KpIfcStringType(true, 22), true));
    }

private:
    void define(const char* name, const char* underlying) {
        auto* type = new KpIfcDefinedType(name, nullptr, true);
        typeDictionary->putAt(name, type);
        pendingUnderlyingTypes[type] = underlying;
    }
};

TEST(SchemaBuilder, LinksNamesWhenAllAreRegistered) {
    KpIfcSchema schema;
    TestBuilder(schema).build();
    EXPECT_STREQ(schema.name(), "TEST");
    EXPECT_EQ(schema.majorVersion(), 2);
    EXPECT_EQ(schema.minorVersion(), 3);
    const auto underlying = [&](const char* name) { return schema.findType(name)->underlyingType(); };
    EXPECT_EQ(underlying("positive"), schema.findType("length"));
    EXPECT_EQ(underlying("WIDTH"), schema.findType("Length"));
    EXPECT_EQ(underlying("length"), KpIfcSimpleType::find("REAL"));
    EXPECT_EQ(underlying("code"), schema.anonymousTypes().at("string(22)fixed"));
    EXPECT_EQ(underlying("lost"), nullptr);
    EXPECT_THAT(schema.unresolvedNames(), testing::ElementsAre("Lost: nowhere"));
    EXPECT_EQ(schema.findType("string(22)fixed"), nullptr);
    EXPECT_EQ(schema.findEntity("length"), nullptr);
}

} // namespace
