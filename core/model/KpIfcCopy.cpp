#include <KpIfcCore/KpIfcCopy.h>

#include "model/CopyMap.h"
#include "model/FieldCopier.h"
#include "model/HeldReferences.h"
#include "model/MakeRoom.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace KP_SDAI {

namespace {

KpIfcSlot s_found{0}; ///< stands for the slot of what has been found and has no name in the target yet

} // namespace

struct KpIfcCopier::State {
    State(const KpIfcModel& source, KpIfcModel& target) : map(source, target) {}

    KP::ErrorStatus copy(std::span<const KpDbObjectId> handles);

    CopyMap map;
    std::size_t count = 0;

private:
    using Slots = std::vector<KpIfcSlot*>;

    void findNeeded(std::span<const KpDbObjectId> handles, Slots& found);
    void sortInFileOrder(Slots& found);
    std::size_t placeInFile(const KpIfcSlot* slot);
    bool chooseNames(const Slots& found);
    void create(const Slots& found);

    // Places in the source's file.
    SlotMap<std::size_t> m_places;
    std::unordered_map<const KeptRecord*, std::size_t> m_recordPlaces;
    std::size_t m_placeCount = 0;
};

KP::ErrorStatus KpIfcCopier::State::copy(std::span<const KpDbObjectId> handles) {
    if (&map.source == &map.target || &map.source.schema() != &map.target.schema()) return KP::eInvalidInput;
    for (const KpDbObjectId& handle : handles)
        if (!handle.isDefined() || handle.model() != &map.source) return KP::eInvalidInput;
    map.target.data().readAll(); // so that all its names are known
    Slots found;
    const auto forgetFound = [&] {
        for (const KpIfcSlot* slot : found) map.slots[slot] = nullptr;
    };
    try {
        findNeeded(handles, found);
        sortInFileOrder(found);
        if (!chooseNames(found)) {
            forgetFound();
            return KP::eRefused;
        }
        create(found);
    } catch (...) {
        forgetFound();
        throw;
    }
    count += found.size();
    return KP::eOk;
}

/// What is to be copied: the handles and what they need, as far as it has no copy.
void KpIfcCopier::State::findNeeded(std::span<const KpDbObjectId> handles, Slots& found) {
    const auto find = [&](const KpDbObjectId& handle) {
        KpIfcSlot*& place = map.slots[handle.slot()];
        if (place) return;
        found.push_back(handle.slot());
        place = &s_found;
    };
    for (const KpDbObjectId& handle : handles) find(handle);
    for (std::size_t next = 0; next < found.size(); ++next)
        visitHeldReferences(KpDbObjectId(found[next]), [&](const KpIfcReference& reference) {
            if (map.slots[reference.to.slot()] == nullptr && map.isFollowed(reference)) find(reference.to);
        });
}

void KpIfcCopier::State::sortInFileOrder(Slots& found) {
    std::vector<std::pair<std::uint64_t, KpIfcSlot*>> places;
    places.reserve(found.size());
    const bool isByName = map.source.data().isOrderedByName();
    for (KpIfcSlot* slot : found)
        places.emplace_back(isByName ? KpDbObjectId(slot).instanceName() : placeInFile(slot), slot);
    std::stable_sort(places.begin(), places.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(places.begin(), places.end(), found.begin(), [](const auto& place) { return place.second; });
}

/// Counts from 1; what came after the first call is behind all else.
std::size_t KpIfcCopier::State::placeInFile(const KpIfcSlot* slot) {
    if (m_placeCount == 0) {
        std::size_t places = 0;
        map.source.data().visitInFileOrder(
            [&](const KpIfcEntityBase* instance) { m_places[instance->objectId().slot()] = ++places; },
            [&](const KeptRecord& record) { m_recordPlaces[&record] = ++places; });
        m_placeCount = places;
    }
    std::size_t place = m_places[slot];
    if (slot->word & KpIfcSlot::kKeptRecord)
        place = m_recordPlaces[reinterpret_cast<const KeptRecord*>(slot->word & ~KpIfcSlot::kKeptRecord)];
    return place ? place : m_placeCount + 1;
}

/// Gives every one found its slot in the target; false where there are not enough names.
bool KpIfcCopier::State::chooseNames(const Slots& found) {
    InstanceTable& table = map.target.data().table;
    table.expectInstances(found.size());
    std::uint64_t highest = map.highestName();
    Slots renamed;
    for (KpIfcSlot* slot : found) {
        const std::uint64_t name = KpDbObjectId(slot).instanceName();
        KpIfcSlot* const place = map.isUsedByText(name) ? nullptr : table.slot(name);
        if (place && place->word == 0 && !map.target.data().wasErased(place)) {
            map.slots[slot] = place;
            highest = std::max(highest, name);
        } else {
            renamed.push_back(slot);
        }
    }
    const bool areEnough = renamed.size() <= std::numeric_limits<std::uint64_t>::max() - highest;
    if (areEnough)
        for (const KpIfcSlot* slot : renamed) map.slots[slot] = table.slot(++highest);
    table.sortSparse();
    return areEnough;
}

void KpIfcCopier::State::create(const Slots& found) {
    ModelData& target = map.target.data();
    for (const KpIfcSlot* slot : found) {
        const KpDbObjectId original(const_cast<KpIfcSlot*>(slot));
        KpIfcSlot* const place = map.slots[slot];
        if (const KpIfcEntityBase* instance = original.openObject()) {
            target.create(*instance->getInstanceType()->facts(), place);
        } else {
            std::string text;
            map.rename(original, nullptr, std::string(map.source.keptRecord(original)), text);
            makeRoomForOne(target.newRecords);
            target.keep(std::move(text), place);
            target.newRecords.push_back(KpDbObjectId(place).instanceName());
        }
    }
    FieldCopier fields(map, found.size());
    for (KpIfcSlot* slot : found)
        if (KpIfcEntityBase* instance = KpDbObjectId(slot).openObject())
            fields.copy(*instance, *KpDbObjectId(map.slots[slot]).openObject());
}

void visitAllReferences(const KpDbObjectId& handle, const std::function<void(const KpIfcReference&)>& visit) {
    visitHeldReferences(handle, visit);
}

KpIfcCopier::KpIfcCopier(const KpIfcModel& source, KpIfcModel& target)
    : m_state(std::make_unique<State>(source, target)) {}
KpIfcCopier::~KpIfcCopier() = default;

void KpIfcCopier::filter(Filter filter) {
    m_state->map.filter = std::move(filter);
}

KP::ErrorStatus KpIfcCopier::copy(const KpDbObjectId& handle) {
    return m_state->copy({&handle, 1});
}

KP::ErrorStatus KpIfcCopier::copy(const KpIfcArray<KpDbObjectId>& handles) {
    return m_state->copy({handles.begin(), handles.size()});
}

KpDbObjectId KpIfcCopier::copyOf(const KpDbObjectId& handle) const {
    return handle.isNull() ? KpDbObjectId() : KpDbObjectId(m_state->map.slots.find(handle.slot()));
}

std::size_t KpIfcCopier::count() const {
    return m_state->count;
}

} // namespace KP_SDAI
