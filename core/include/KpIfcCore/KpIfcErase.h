#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstdint>
#include <span>

namespace KP_SDAI {

class KpIfcModel;

/// What happens to those that refer to an instance that is to be erased.
enum class KpIfcErasePolicy {
    /// Nothing is erased while anything else refers to it.
    refuse,
    /// The references are dropped: attributes unset, elements removed from aggregates, selects nullified.
    dropReferences,
    /// The references are dropped; then go, until nothing more does,
    ///  - whatever an erased instance referred to, directly or not, and nothing that stays refers to any more;
    ///  - referrers that now lack a value that they must have (a relation that relates nothing), if nothing refers to
    ///    them.
    /// Objects and types of the building (IfcObjectDefinition) that were not asked for stay, but for features
    /// (openings, projections) whose host went; relations of a feature do not keep it. What merely tells of something
    /// does not keep it either and goes with it: styled items, shape aspects, layer assignments and representations of
    /// materials that are left without what they tell of.
    cascade
};

/// A reference from one instance to another, through whatever attributes.
struct KpIfcReferrer {
    KpDbObjectId referrer;
    KpDbObjectId target;
};

/// An attribute that lost references and now has fewer values than the schema demands.
struct KpIfcLackingValue {
    KpDbObjectId instance;
    const char* attribute; ///< its name; lives as long as the module
};

struct KpIfcEraseResult {
    /// eOk; eRefused where something refers to an instance; eNullEntity where a handle is that of nothing in this
    /// model.
    KP::ErrorStatus status = KP::eOk;
    KpIfcArray<KpIfcReferrer> references;  ///< because of which it was refused, by target, then referrer
    KpIfcArray<std::uint64_t> erased;      ///< names, ascending; those that were not asked for included
    KpIfcArray<KpDbObjectId> changed;      ///< instances that stayed and lost references, ascending
    KpIfcArray<KpIfcLackingValue> lacking; ///< of those
    /// Where records that are kept as text still name something that is erased: their text is not touched.
    KpIfcArray<KpIfcReferrer> stillNamed;
};

/// Erases instances, and records that are kept as text, from a model; each may be given more than once, and they may
/// refer to each other and to themselves. Where the status is not eOk all is as it was.
///
/// An erased instance's handles are dead, everywhere: they open nothing and are not defined. A plain pointer to it
/// stays good while the model lives; the instance belongs to no model and keeps its values. Its name is never given
/// again. References count that only source text holds: the text of a field is dropped with them, that
/// of a whole record stays.
///
/// Throws KpIfcException 180 where the model's mode is not kReadWrite. Where memory runs out (std::bad_alloc) some
/// references may have been dropped and some instances erased, each of them wholly: a KpIfcChangeGroup undoes that.
///
///     if (erase(model, {&wall, 1}, KpIfcErasePolicy::cascade).status == KP::eOk) ...
KPIFCCORE_EXPORT KpIfcEraseResult erase(KpIfcModel& model, std::span<const KpDbObjectId> handles,
                                        KpIfcErasePolicy policy = KpIfcErasePolicy::refuse);

} // namespace KP_SDAI
