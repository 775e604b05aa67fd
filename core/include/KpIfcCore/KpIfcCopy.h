#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcFacts.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace KP_SDAI {

class KpIfcModel;

/// One reference that an instance or a record kept as text holds.
struct KpIfcReference {
    KpDbObjectId from;
    /// The explicit attribute that holds it, as its row stands in the entity's recordFields(); null where it stands in
    /// the text of a whole record.
    const KpIfcAttributeFacts* attribute;
    KpDbObjectId to;
};

/// Calls `visit` for every reference of an instance or of a record kept as text that leads to another one of the same
/// model: those that attributes hold and those that only source texts have, which are written in place of fields that
/// attributes cannot hold. One that occurs several times is visited as often.
KPIFCCORE_EXPORT void visitAllReferences(const KpDbObjectId& handle,
                                         const std::function<void(const KpIfcReference&)>& visit);

/// Copies instances with all that they need, which is whatever they refer to, directly or not, from one model into
/// another one of the same schema.
///
///     KpIfcCopier copier(*house.model(), *part.model());
///     if (copier.copy(wall->objectId()) == KP::eOk) ... copier.copyOf(wall->objectId()) ...
///
/// A copy has the name of its original where the target has none of that name yet, else a new one above the highest.
/// Whatever a copier has copied it copies once; later copies refer to the same. Values are copied as they are,
/// GlobalIds included; texts are converted where the models hold them in different forms (code points that do not exist
/// become U+FFFD). Source texts of fields that attributes cannot hold and records kept as text go along, with the names
/// of what they refer to. Names in them that refer to nothing still do so in the target: they change only where the
/// target has something of that name.
///
/// Copies made by one call follow each other in the target's file order as their originals do in the source. Inverse
/// attributes and referrers of the target follow by its next commit, as after any change.
///
/// Where memory runs out (std::bad_alloc) the copier knows nothing of what it was about to copy, but the target may
/// have a part of that, also instances without values: a KpIfcChangeGroup undoes them.
///
/// Reads the source only, the first call its file order for good; both models outlive the copier, and neither may lose
/// instances while it copies. One thread at a time, for which the target's are the rules of a change.
class KPIFCCORE_EXPORT KpIfcCopier {
public:
    /// Says whether a reference is followed. It must give the same answer whenever it is asked for the same reference.
    using Filter = std::function<bool(const KpIfcReference&)>;

    KpIfcCopier(const KpIfcModel& source, KpIfcModel& target);
    KpIfcCopier(const KpIfcCopier&) = delete;
    KpIfcCopier& operator=(const KpIfcCopier&) = delete;
    ~KpIfcCopier();

    /// From now on only references that the filter accepts are followed. The copy has none in place of another: an
    /// attribute is unset, an aggregate without that element, a record's text has $. Source text of a field is not
    /// kept where it has one.
    void filter(Filter filter);

    /// Copies an instance or a record kept as text, or all of several; what was copied already is no error. Nothing is
    /// copied where the result is not eOk: eInvalidInput where the models are of different schemas or one and the same,
    /// or a handle is not that of something in the source; eRefused where the target has no instance names left.
    KP::ErrorStatus copy(const KpDbObjectId& handle);
    KP::ErrorStatus copy(const KpIfcArray<KpDbObjectId>& handles);

    /// The copy of something of the source; null where this copier has made none.
    KpDbObjectId copyOf(const KpDbObjectId& handle) const;
    /// How many copies this copier has made, records kept as text included.
    std::size_t count() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace KP_SDAI
