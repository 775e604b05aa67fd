#include "InverseTruth.h"

#include "Environment.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/KpIfcReferences.h>
#include <KpIfcCore/KpIfcSchema.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>

using namespace KP_SDAI;

namespace {

using Inverse = KpIfcInverseAttributeDefinition;
using Entries = std::map<std::pair<std::uint64_t, std::string>, std::set<std::uint64_t>>; // by owner and attribute

/// The inverse attributes that instances of `type` are entered in.
std::vector<const Inverse*> inversesFedBy(const KpIfcEntityType& type) {
    std::vector<const Inverse*> fed;
    for (const KpIfcEntityType* owner : entityTypes(*type.schema())) {
        for (const auto& attribute : owner->attributes()) {
            const auto* inverse = attribute->as<Inverse>();
            if (inverse && type.isKindOf(inverse->target())) {
                fed.push_back(inverse);
            }
        }
    }
    return fed;
}

Entries entriesFromReferences(const KpIfcModel& model) {
    Entries entries;
    std::map<const KpIfcEntityType*, std::vector<const Inverse*>> fedBy;
    for (KpIfcEntityBase* instance : model.instances()) {
        const auto [found, isNew] = fedBy.try_emplace(instance->getInstanceType());
        if (isNew) {
            found->second = inversesFedBy(*instance->getInstanceType());
        }
        for (const Inverse* inverse : found->second) {
            visitReferences(*instance, *inverse->invertedAttribute()->facts(), [&](const KpDbObjectId& handle) {
                const KpIfcEntityBase* target = handle.openObject();
                if (target && target->isKindOf(inverse->owner())) {
                    entries[{handle.instanceName(), inverse->name()}].insert(instance->instanceName());
                }
            });
        }
    }
    return entries;
}

Entries entriesFromInverses(const KpIfcModel& model) {
    Entries entries;
    for (KpIfcEntityBase* instance : model.instances()) {
        for (const KpIfcEntityType* type = instance->getInstanceType(); type; type = type->superType()) {
            for (std::uint32_t i = 0; i < type->facts()->inverseCount; ++i) {
                const KpIfcInverseFacts& row = type->facts()->inverses[i];
                std::set<std::uint64_t> referrers;
                std::uint64_t last = 0;
                for (const KpDbObjectId& referrer : row.members(*instance).read(*instance, row.index)) {
                    EXPECT_LT(last, referrer.instanceName()) << "not ascending";
                    last = referrer.instanceName();
                    referrers.insert(last);
                }
                if (!referrers.empty()) {
                    entries[{instance->instanceName(), row.name}] = referrers;
                }
            }
        }
    }
    return entries;
}

} // namespace

std::vector<std::uint64_t> inverseOf(const KpIfcModel& model, std::uint64_t name, const std::string& inverse) {
    KpIfcEntityBase* instance = model.find(name).openObject();
    for (const KpIfcEntityType* type = instance ? instance->getInstanceType() : nullptr; type;
         type = type->superType()) {
        for (std::uint32_t i = 0; i < type->facts()->inverseCount; ++i) {
            const KpIfcInverseFacts& row = type->facts()->inverses[i];
            if (row.name == inverse) {
                std::vector<std::uint64_t> names;
                for (const KpDbObjectId& referrer : row.members(*instance).read(*instance, row.index)) {
                    names.push_back(referrer.instanceName());
                }
                return names;
            }
        }
    }
    ADD_FAILURE() << "#" << name << " has no inverse attribute " << inverse;
    return {};
}

std::size_t expectTrueInverses(const KpIfcModel& model) {
    const Entries found = entriesFromInverses(model);
    const Entries expected = entriesFromReferences(model);
    std::size_t count = 0;
    int told = 0;
    for (const auto& [place, referrers] : expected) {
        count += referrers.size();
        const auto other = found.find(place);
        if ((other == found.end() || other->second != referrers) && ++told < 5) {
            ADD_FAILURE() << "#" << place.first << "." << place.second << " holds "
                          << (other == found.end() ? 0 : other->second.size()) << " instances, " << referrers.size()
                          << " refer to it, first #" << *referrers.begin();
        }
    }
    for (const auto& [place, referrers] : found) {
        if (!expected.count(place) && ++told < 5) {
            ADD_FAILURE() << "#" << place.first << "." << place.second << " holds #" << *referrers.begin()
                          << ", which does not refer to it";
        }
    }
    return count;
}
