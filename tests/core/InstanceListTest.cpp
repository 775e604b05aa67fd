#include "model/InstanceList.h"

#include <KpIfcCore/KpIfcEntityBase.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace KP_SDAI;

std::vector<KpIfcEntityBase*> all(const InstanceList& list) {
    std::vector<KpIfcEntityBase*> found;
    list.visit([&found](KpIfcEntityBase* instance) { found.push_back(instance); });
    return found;
}

std::vector<KpIfcEntityBase*> added(const InstanceList& list) {
    std::vector<KpIfcEntityBase*> found;
    list.visitNew([&found](KpIfcEntityBase* instance) { found.push_back(instance); });
    return found;
}

/// Wherever a mark falls, at the ends of the pieces that the list is made of too.
TEST(InstanceList, KnowsWhatCameSinceAMark) {
    std::vector<KpIfcEntityBase> instances(200);
    for (std::size_t before = 0; before < 130; ++before) {
        KpArena arena;
        InstanceList list;
        std::vector<KpIfcEntityBase*> expected, expectedNew;
        const auto append = [&](KpIfcEntityBase& instance) {
            list.makeRoomForOne(arena);
            list.makeRoomForOne(arena); // as where what was to follow has failed
            list.append(instance);
            expected.push_back(&instance);
            expectedNew.push_back(&instance);
        };
        for (std::size_t i = 0; i < before; ++i) append(instances[i]);
        ASSERT_EQ(list.hasNew(), before != 0);
        list.mark();
        expectedNew.clear();
        ASSERT_FALSE(list.hasNew());
        ASSERT_EQ(added(list), expectedNew) << before;
        for (std::size_t i = before; i < before + 70; ++i) {
            append(instances[i]);
            ASSERT_EQ(added(list), expectedNew) << before;
        }
        ASSERT_EQ(all(list), expected) << before;
    }
}

} // namespace
