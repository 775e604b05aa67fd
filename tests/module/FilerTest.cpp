#include "Environment.h"

#include <IFC2X3/IfcPerson.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace KP_SDAI;
using IFC2X3::IfcPerson;

namespace {

using Read = std::function<std::string(KpSpfFilerBase&)>;

Read g_read;
std::string g_result;

/// Reads its record in the way that a test asks for.
class Reader : public IfcPerson {
public:
    KP::ErrorStatus inFields(KpSpfFilerBase* filer) override {
        g_result = g_read(*filer);
        return KP::eOk;
    }
};

KpIfcEntityBase* constructReader(void* memory) noexcept {
    return ::new (memory) Reader;
}

/// What `read` makes of a parameter list, and a number that comes behind.
std::string readBy(const Read& read, const std::string& parameters) {
    const KpIfcFile schemaHolder = emptyFile();
    auto* type = const_cast<KpIfcEntityType*>(IfcPerson::g_pEntityType);
    const KpIfcEntityFacts* const facts = type->facts();
    KpIfcEntityFacts changed = *facts;
    changed.construct = constructReader;
    type->facts(&changed);
    g_read = [&](KpSpfFilerBase& filer) {
        std::string result = read(filer);
        double number = 0;
        filer.rdPrimitive(number, false);
        return result + " then " + std::to_string(static_cast<int>(number));
    };
    g_result = "not read";
    openedRecords("#1=IFCPERSON(" + parameters + ");\n");
    type->facts(facts);
    return g_result;
}

Read skipUntil(char c) {
    return [c](KpSpfFilerBase& filer) { return std::string(filer.skipUntil(c) ? "found" : "none"); };
}
Read ignoreUntil(char c) {
    return [c](KpSpfFilerBase& filer) {
        filer.ignoreUntilComments(c, true);
        return std::string("moved");
    };
}
Read blanksUntil(char c) {
    return [c](KpSpfFilerBase& filer) {
        KpSpfReadHelper helper(filer);
        const bool found = helper.skipUntilRet(c, [](char other) { return other == ' '; });
        if (found) filer.skipUntil(c);
        return std::string(found ? "found" : "none");
    };
}

TEST(Filer, PunctuationOfAggregatesIsSteppedOver) {
    const struct {
        const char* parameters;
        Read read;
        const char* expected;
    } cases[] = {
        {"/* ( */ (7,8)", skipUntil('('), "found then 7"},
        {"'a(' , (7,8)", skipUntil('('), "found then 7"},
        {"5,7", skipUntil('('), "none then 5"},
        {"/* ( */ (7,8)", ignoreUntil('('), "moved then 7"},
        {" /* , */ ,7", ignoreUntil(','), "moved then 7"},
        {"3,7", ignoreUntil(','), "moved then 7"},
        {"  (7)", blanksUntil('('), "found then 7"},
        {"  ,7", blanksUntil(','), "found then 7"},
        {"7,8", blanksUntil(','), "none then 7"},
        {".ABC.,7",
         [](KpSpfFilerBase& filer) {
             const KpAnsiString literal = filer.rdEnumerationToStr(true, false);
             filer.skipUntil(',');
             return std::string(literal.constStr());
         },
         "ABC then 7"},
        {"(1,(2,'),')),7",
         [](KpSpfFilerBase& filer) {
             const bool ignored = KpSpfReadHelper(filer).ignoreParamter(false);
             filer.skipUntil(',');
             return std::string(ignored ? "ignored" : "none");
         },
         "ignored then 7"},
    };
    for (const auto& one : cases) EXPECT_EQ(one.expected, readBy(one.read, one.parameters)) << one.parameters;
}

/// Keeps what it was asked for.
class Recorder : public IfcPerson {
public:
    KP::ErrorStatus inFields(KpSpfFilerBase* filer) override {
        asked.emplace_back("in", filer);
        return KP::eInvalidInput;
    }
    KP::ErrorStatus outFields(KpSpfFilerBase* filer) override {
        asked.emplace_back("out", filer);
        return KP::eNotHandled;
    }

    std::vector<std::pair<std::string, KpSpfFilerBase*>> asked;
};

TEST(Filer, IsHandedOnToTheFieldsOfTheClass) {
    Recorder recorder;
    KpIfcEntityBase& instance = recorder;
    auto* const filer = reinterpret_cast<KpSpfFilerBase*>(&recorder); // none is made without a file, and none is used
    EXPECT_EQ(instance._inFields(filer), KP::eInvalidInput);
    EXPECT_EQ(instance._outFields(filer), KP::eNotHandled);
    EXPECT_THAT(recorder.asked, testing::ElementsAre(std::pair("in", filer), std::pair("out", filer)));
}

} // namespace
