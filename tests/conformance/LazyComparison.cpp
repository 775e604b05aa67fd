#include "LazyComparison.h"

#include "AttributeText.h"
#include "StepFiles.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpIfcKeptText.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <gtest/gtest.h>
#include <part21/SmallParts.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <vector>

using namespace KP_SDAI;

namespace {

/// All that is said of an instance but who refers to it.
std::string textOf(KpIfcEntityBase& instance) {
    std::string text = attributesText(instance);
    for (const KpIfcKeptField& kept : keptFields(instance)) {
        text += "  kept " + std::to_string(kept.field) + ": " + std::string(kept.source) + '\n';
    }
    return text;
}

std::string referrersText(const KpIfcModel& model, const KpIfcEntityBase& instance) {
    std::string text = '#' + std::to_string(instance.instanceName()) + " <-";
    for (const KpDbObjectId& referrer : model.referrers(instance.objectId())) {
        text += " #" + std::to_string(referrer.instanceName());
    }
    for (const KpIfcAttributeDefinition* attribute : instance.getInstanceType()->allAttributes()) {
        KpIfcArray<KpDbObjectId> referrers;
        if (attribute->kind() != KpIfcAttributeKind::inverseAttribute ||
            !peekInverse(instance, attribute->name(), referrers)) {
            continue;
        }
        text += std::string("; ") + attribute->name();
        for (const KpDbObjectId& referrer : referrers) {
            text += " #" + std::to_string(referrer.instanceName());
        }
    }
    return text + '\n';
}

std::string countsText(const KpIfcModel& model) {
    std::string text = std::to_string(model.count()) + " instances, " + std::to_string(model.keptRecordCount()) +
                       " kept, up to #" + std::to_string(model.highestName()) + '\n';
    for (const KpIfcEntityCount& count : model.entityCounts()) {
        text += std::string(count.entity->name()) + ' ' + std::to_string(count.instances) + '\n';
    }
    return text;
}

std::string namesOf(const KpIfcArray<KpDbObjectId>& handles) {
    std::string text;
    for (const KpDbObjectId& handle : handles) {
        text += " #" + std::to_string(handle.instanceName());
    }
    return text;
}

std::set<std::string> globalIdsOf(const KpIfcModel& model) {
    std::set<std::string> globalIds{"", "0000000000000000000000", "no GlobalId"};
    for (const KpIfcEntityBase* rooted : model.instances("IfcRoot")) {
        KpIfcVariant value;
        peekAttribute(*rooted, "GlobalId", value);
        if (const KpIfcGUID* const globalId = value.getIf<KpIfcGUID>()) {
            globalIds.insert(globalId->constStr());
        }
    }
    return globalIds;
}

void compareWhole(KpIfcFile& lazy, KpIfcFile& full) {
    KpIfcModel& model = *lazy.model();
    EXPECT_TRUE(model.isWhole());
    EXPECT_TRUE(lazy.report().isComplete());
    EXPECT_EQ(findings(lazy.report()), findings(full.report()));
    EXPECT_EQ(lazy.report().departures(), full.report().departures());
    EXPECT_EQ(countsText(model), countsText(*full.model()));
    std::size_t differing = 0;
    for (KpIfcEntityBase* one : full.model()->instances()) {
        KpIfcEntityBase* const other = model.find(one->instanceName()).openObject();
        ASSERT_NE(other, nullptr);
        if (textOf(*one) == textOf(*other) && referrersText(*full.model(), *one) == referrersText(model, *other)) {
            continue;
        }
        ADD_FAILURE() << textOf(*other) << referrersText(model, *other) << "instead of\n"
                      << textOf(*one) << referrersText(*full.model(), *one);
        ASSERT_LT(++differing, 5u);
    }
    EXPECT_EQ(namesOf(model.fileOrder()), namesOf(full.model()->fileOrder()));
    EXPECT_TRUE(saved(lazy) == saved(full));
    EXPECT_TRUE(rewritten(lazy) == rewritten(full));
    touchAll(lazy);
    touchAll(full);
    EXPECT_TRUE(rewritten(lazy) == rewritten(full)) << "touched";
}

} // namespace

bool compareWithFullReading(const std::string& content, unsigned seed) {
    KpIfcFile full;
    KpIfcFile lazy;
    const KP::ErrorStatus status = full.openMemory(content.data(), content.size());
    // By several threads all that is left is read, every other time, in parts that end anywhere.
    const KpIfcOpenOptions options = {.threads = 1 + seed % 2, .lazy = true};
    {
        const SmallParts parts(16 + seed % 64);
        EXPECT_EQ(lazy.openMemory(content.data(), content.size(), "memory", options), status);
    }
    EXPECT_EQ(lazy.error(), full.error());
    if (status != KP::eOk) {
        return false;
    }
    KpIfcModel& model = *lazy.model();
    const bool isLazy = !model.isWhole();
    EXPECT_EQ(lazy.size(), full.size());
    EXPECT_EQ(countsText(model), countsText(*full.model()));

    std::mt19937 random(seed);
    std::vector<KpIfcEntityBase*> instances;
    for (KpIfcEntityBase* instance : full.model()->instances()) {
        instances.push_back(instance);
    }
    std::shuffle(instances.begin(), instances.end(), random);
    instances.resize(std::min<std::size_t>(instances.size() / 3 + 1, std::min<std::size_t>(instances.size(), 900)));
    std::map<std::uint64_t, const KpIfcEntityBase*> touched;
    for (KpIfcEntityBase* const instance : instances) {
        KpIfcEntityBase* const other = model.find(instance->instanceName()).openObject();
        touched[instance->instanceName()] = other;
        if (!other || textOf(*instance) != textOf(*other)) {
            ADD_FAILURE() << (other ? textOf(*other) : "nothing\n") << "instead of\n" << textOf(*instance);
            break;
        }
    }
    std::size_t asked = 0;
    for (const std::string& globalId : globalIdsOf(*full.model())) {
        EXPECT_EQ(namesOf(model.findAllByGlobalId(globalId)), namesOf(full.model()->findAllByGlobalId(globalId)));
        EXPECT_EQ(model.findByGlobalId(globalId).instanceName(), full.model()->findByGlobalId(globalId).instanceName());
        if (++asked == 50) {
            break;
        }
    }
    EXPECT_EQ(isLazy && model.isWhole(), false) << "looking up has read all";
    EXPECT_EQ(countsText(model), countsText(*full.model())) << "touched";

    EXPECT_EQ(lazy.readAll(), KP::eOk) << lazy.error();
    for (const auto& [name, instance] : touched) {
        EXPECT_EQ(model.find(name).openObject(), instance) << "has moved";
    }
    compareWhole(lazy, full);
    return isLazy;
}
