#include "ModelTruth.h"

#include "Environment.h"
#include "InverseTruth.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcReferences.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

using namespace KP_SDAI;

namespace {

using Names = std::vector<std::uint64_t>;

Names namesOf(const KpIfcArray<KpDbObjectId>& handles) {
    Names names;
    for (const KpDbObjectId& handle : handles) {
        names.push_back(handle.instanceName());
    }
    return names;
}

} // namespace

void expectTruth(const KpIfcModel& model) {
    expectTrueInverses(model);

    std::map<std::uint64_t, std::set<std::uint64_t>> referrers;
    std::map<std::string, Names> globalIds;
    std::set<std::uint64_t> all;
    for (KpIfcEntityBase* instance : model.instances()) {
        const std::uint64_t name = instance->instanceName();
        all.insert(name);
        for (const KpIfcAttributeFacts* row : instance->getInstanceType()->recordFields()) {
            visitReferences(*instance, *row, [&](const KpDbObjectId& handle) {
                if (handle.isNull()) {
                    return;
                }
                EXPECT_TRUE(handle.isDefined()) << "#" << name << "." << row->name << ": #" << handle.instanceName();
                referrers[handle.instanceName()].insert(name);
            });
        }
        KpIfcVariant value;
        if (peekAttribute(*instance, "GlobalId", value) && !value.getIf<KpIfcGUID>()->isUnset()) {
            globalIds[value.getIf<KpIfcGUID>()->constStr()].push_back(name);
        }
        globalIds.erase("");
    }
    EXPECT_EQ(model.count(), all.size());
    const Names order = namesOf(model.fileOrder());
    EXPECT_EQ(order.size(), all.size());
    EXPECT_EQ(std::set<std::uint64_t>(order.begin(), order.end()), all);
    for (std::uint64_t name = 1; name <= model.highestName(); ++name) {
        const std::set<std::uint64_t>& expected = referrers[name];
        EXPECT_EQ(namesOf(model.referrers(model.find(name))), Names(expected.begin(), expected.end())) << "#" << name;
    }
    std::map<std::string, Names> shared;
    for (const auto& [globalId, names] : globalIds) {
        EXPECT_EQ(model.findByGlobalId(globalId), model.find(names.front())) << globalId;
        EXPECT_EQ(namesOf(model.findAllByGlobalId(globalId)), names) << globalId;
        if (names.size() > 1) {
            shared[globalId] = names;
        }
    }
    std::map<std::string, Names> told;
    for (const KpIfcSharedGlobalId& one : model.sharedGlobalIds()) {
        told[one.globalId.constStr()] = namesOf(one.instances);
    }
    EXPECT_EQ(told, shared);
}

std::string stateOf(KpIfcFile& file) {
    const KpIfcModel& model = *file.model();
    std::string state = savedRecords(file);
    state += "count " + std::to_string(model.count()) + ", kept " + std::to_string(model.keptRecordCount()) +
             ", highest " + std::to_string(model.highestName()) + ", order";
    for (const KpDbObjectId& handle : model.fileOrder()) {
        state += " " + std::to_string(handle.instanceName());
    }
    return state;
}
