#include "Environment.h"
#include "InverseTruth.h"
#include "Samples.h"

#include <IFC2X3/Select.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <map>
#include <set>
#include <utility>

namespace fs = std::filesystem;
using namespace KP_SDAI;

namespace {

using Names = std::set<std::uint64_t>;

/// Who refers to whom, by the text of a data section: every "#n" outside apostrophes behind a record's "#n=".
std::map<std::uint64_t, Names> referrersByText(const std::string& records) {
    std::map<std::uint64_t, Names> referrers;
    std::uint64_t record = 0;
    bool inText = false;
    bool isLineStart = true;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const char c = records[i];
        if (c == '\'') {
            inText = !inText;
        } else if (c == '#' && !inText) {
            const std::uint64_t name = std::stoull(records.substr(i + 1, 20));
            if (isLineStart) {
                record = name;
            } else {
                referrers[name].insert(record);
            }
        }
        isLineStart = c == '\n';
    }
    return referrers;
}

template <class Visit>
void visitSelects(KpIfcEntityBase& instance, Visit visit) {
    for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
        if (row->kind == KpIfcFieldKind::select) {
            visit(row->member.select(instance));
        } else if (row->kind == KpIfcFieldKind::aggregate && row->aggregate->element == KpIfcElementKind::select) {
            const KpIfcAggr& aggregate = row->member.aggregate(instance);
            for (std::size_t i = 0; i < aggregate.size(); ++i) {
                visit(row->aggregate->selectAt(aggregate, i));
            }
        }
    }
}

/// Instances with a select whose handle waits for being resolved.
Names unresolvedSelects(const KpIfcModel& model) {
    Names names;
    for (KpIfcEntityBase* instance : model.instances()) {
        visitSelects(*instance, [&](const KpIfcSelect& select) {
            const int alternatives = select.underlyingTypeByName("no such name");
            if (static_cast<const IFC2X3::Select&>(select).tag() == alternatives + 1) {
                names.insert(instance->instanceName());
            }
        });
    }
    return names;
}

TEST(SelectReferences, AreResolvedOrReported) {
    const KpIfcFile file =
        openedRecords("#1=IFCCARTESIANPOINT((0.,0.));\n"
                      "#2=IFCGEOMETRICSET((#9,#1,#8,#7));\n" // sets of selects, with references both ways
                      "#3=IFCTRIMMEDCURVE(#9,(#1),(#7),.T.,.CARTESIAN.);\n" // #7 will be no point
                      "#4=IFCTRIMMEDCURVE(#9,(#2),(#8),.T.,.CARTESIAN.);\n" // #2 is none
                      "#5=IFCCURVESTYLE($,$,#1,#6);\n"                      // neither a width nor a colour
                      "#6=IFCNOTHING();\n"                                  // nobody knows what it is
                      "#7=IFCPOLYLINE((#1,#8));\n"
                      "#8=IFCCARTESIANPOINT((1.,0.));\n"
                      "#9=IFCPOLYLINE((#1,#8));\n");
    EXPECT_EQ(unresolvedSelects(*file.model()), (Names{3, 4, 5}));
    std::set<std::pair<std::uint64_t, std::string>> reported;
    for (const KpIfcReportEntry& entry : file.report().entries()) {
        if (entry.finding == KpIfcFinding::wrongReference) {
            reported.emplace(entry.instanceName, entry.attribute);
        }
    }
    EXPECT_EQ(reported,
              (std::set<std::pair<std::uint64_t, std::string>>{{3, "Trim2"}, {4, "Trim1"}, {5, "CurveWidth"}}));
}

/// The example and the real files beside the checkout, where there are any.
std::vector<fs::path> files() {
    std::vector<fs::path> all = findSamples(fs::path(KP_SHARED_DIR) / "samples");
    all.emplace_back(fs::path(KP_SOURCE_DIR) / "examples/small_house.ifc");
    return all;
}

class References : public testing::TestWithParam<fs::path> {
protected:
    void SetUp() override {
        const UnpackedFile sample(GetParam());
        ASSERT_EQ(m_file.open(sample.path().string()), KP::eOk) << m_file.error();
    }
    KpIfcFile m_file;
};

TEST_P(References, AreWhatInverseAttributesHold) {
    EXPECT_GT(expectTrueInverses(*m_file.model()), 0u);
}

TEST_P(References, AreWhatReferrersTell) {
    const KpIfcModel& model = *m_file.model();
    const std::map<std::uint64_t, Names> expected = referrersByText(savedRecords(m_file));
    int told = 0;
    for (const KpIfcEntityBase* instance : model.instances()) {
        const KpIfcArray<KpDbObjectId> referrers = model.referrers(instance->objectId());
        const auto found = expected.find(instance->instanceName());
        const Names none;
        const Names& names = found == expected.end() ? none : found->second;
        bool same = names.size() == referrers.size();
        auto next = names.begin();
        for (std::size_t i = 0; same && i < referrers.size(); ++i) {
            same = referrers[i].instanceName() == *next++;
        }
        if (!same && ++told < 5) {
            ADD_FAILURE() << "#" << instance->instanceName() << ": " << referrers.size() << " referrers, "
                          << names.size() << " in the text";
        }
    }
}

/// Reading a select must not be what resolves its handle: many threads may read at once.
TEST_P(References, OfSelectsAreResolvedByOpening) {
    EXPECT_EQ(unresolvedSelects(*m_file.model()), Names());
}

INSTANTIATE_TEST_SUITE_P(Files, References, testing::ValuesIn(files()), nameOf);

} // namespace
