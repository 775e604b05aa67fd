#include "AttributeText.h"
#include "Environment.h"

#include <IFC2X3/IfcWallStandardCase.h>
#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <gtest/gtest.h>

#include <functional>

using namespace KP_SDAI;
using IFC2X3::IfcWallStandardCase;

namespace {

enum class Allowed { all, reading, none };

struct Operation {
    const char* name;
    bool writes;
    std::function<bool(KpIfcEntityBase&, const char*)> run; ///< its result
};

const Operation kOperations[] = {
    {"getAttr", false,
     [](KpIfcEntityBase& instance, const char* name) {
         KpIfcVariant value;
         return instance.getAttr(name, value);
     }},
    {"testAttr", false, [](KpIfcEntityBase& instance, const char* name) { return instance.testAttr(name); }},
    {"putAttr", true, [](KpIfcEntityBase& instance, const char* name) { return instance.putAttr(name, "new"); }},
    {"unsetAttr", true,
     [](KpIfcEntityBase& instance, const char* name) {
         instance.unsetAttr(name);
         return false;
     }},
};

/// "" where the operation did what it should; else what it threw. `mode` is that of the instance's model.
std::string thrown(const Operation& operation, KpIfcEntityBase& instance, const char* name) {
    try {
        operation.run(instance, name);
    } catch (const KpIfcException& e) {
        return std::to_string(e.code()) + ' ' + e.message() + " in " + e.where();
    }
    return "";
}

void expectAccess(KpIfcEntityBase& instance, const std::string& entity, Allowed allowed) {
    // An attribute of the root, one of the class itself or none: the most derived class is named all the same.
    for (const char* attribute : {"Name", "Tag", "Coordinates", "nothing"}) {
        for (const Operation& operation : kOperations) {
            const bool refused = allowed == Allowed::none || (operation.writes && allowed == Allowed::reading);
            const std::string before = attributesText(instance);
            const std::string expected = !refused ? ""
                                                  : (operation.writes ? "180 SDAI-model access not read-write"
                                                                      : "190 SDAI-model access not defined") +
                                                        (" in IFC2X3::" + entity + "::" + operation.name);
            EXPECT_EQ(thrown(operation, instance, attribute), expected) << attribute;
            if (refused || !operation.writes) {
                EXPECT_EQ(attributesText(instance), before) << attribute << ' ' << operation.name;
            }
        }
    }
}

TEST(AccessMode, DecidesWhatAccessByNameMayDo) {
    static constexpr const char* kRecords = "#1=IFCWALLSTANDARDCASE('0123456789012345678901',$,'old',$,$,$,$,'old');\n"
                                            "#2=IFCCARTESIANPOINT((1.,2.));\n";
    static constexpr struct {
        SdaiAccessMode mode;
        Allowed allowed;
    } kModes[] = {
        {kAccessUndefined, Allowed::none},
        {kReadOnly, Allowed::reading},
        {static_cast<SdaiAccessMode>(3), Allowed::reading}, // neither undefined nor for writing
        {kReadWrite, Allowed::all},
    };
    for (const auto& [mode, allowed] : kModes) {
        SCOPED_TRACE(mode);
        KpIfcFile file = openedRecords(kRecords);
        KpIfcModel& model = *file.model();
        model.mode(mode);
        expectAccess(*model.find(1).openObject(), "IfcWallStandardCase", allowed);
        expectAccess(*model.find(2).openObject(), "IfcCartesianPoint", allowed);
        EXPECT_EQ(model.find(1).openObject()->isChanged(), allowed == Allowed::all);
        EXPECT_EQ(savedRecords(file) == kRecords, allowed != Allowed::all);
    }
    IfcWallStandardCase wall; // belongs to no model
    expectAccess(wall, "IfcWallStandardCase", Allowed::all);
    EXPECT_TRUE(wall.putAttr("Name", "new"));
    EXPECT_EQ(wall.getName().view(), "new");
}

/// What is handed out as a pointer into the instance may be changed through it.
TEST(AccessMode, WhichReadsCountAsChanges) {
    static constexpr const char* kRecord = "#1=IFCPROPERTYSINGLEVALUE('n',$,IFCLABEL('oak'),$);\n"
                                           "#2=IFCCARTESIANPOINT((1.,2.));\n";
    static constexpr struct {
        std::uint64_t name;
        const char* attribute;
        bool changes; ///< on a model that may be written
    } kCases[] = {{1, "Name", false}, {1, "NominalValue", true}, {1, "nothing", false}, {2, "Coordinates", true}};
    for (const auto& c : kCases) {
        for (const SdaiAccessMode mode : {kReadOnly, kReadWrite}) {
            KpIfcFile file = openedRecords(kRecord);
            file.model()->mode(mode);
            KpIfcEntityBase& instance = *file.model()->find(c.name).openObject();
            KpIfcVariant value;
            instance.testAttr(c.attribute);
            EXPECT_FALSE(instance.isChanged()) << c.attribute;
            instance.getAttr(c.attribute, value);
            EXPECT_EQ(instance.isChanged(), c.changes && mode == kReadWrite) << c.attribute;
            EXPECT_EQ(savedRecords(file), kRecord);
        }
    }
    // What is refused is no change.
    KpIfcFile file = openedRecords(kRecord);
    KpIfcEntityBase& point = *file.model()->find(2).openObject();
    EXPECT_FALSE(point.putAttr("Coordinates", KpIfcArray<KpDbObjectId>()));
    EXPECT_FALSE(point.putAttr("nothing", 1));
    point.unsetAttr("nothing");
    EXPECT_FALSE(point.isChanged());
    point.unsetAttr("Coordinates");
    EXPECT_TRUE(point.isChanged());
}

} // namespace
