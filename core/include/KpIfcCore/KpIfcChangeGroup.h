#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

namespace KP_SDAI {

class KpIfcModel;

/// Changes of one model that are kept or undone together.
///
///     KpIfcChangeGroup changes(model);
///     wall->setName("A");
///     if (erase(model, handles).status == KP::eOk) changes.keep(); // else all is undone here
///
/// Whatever changes the model while a group is open counts, by whatever path: setters and references to members, values
/// by name, assignment, properties, forgotten source text, creation, erasure. It begins with a commit, so references to
/// members that were obtained before are to be obtained anew. Ends before its model does. Not for several threads.
class KPIFCCORE_EXPORT KpIfcChangeGroup {
public:
    /// Opens a group. Throws std::logic_error where the model has an open one already.
    explicit KpIfcChangeGroup(KpIfcModel& model);
    KpIfcChangeGroup(const KpIfcChangeGroup&) = delete;
    KpIfcChangeGroup& operator=(const KpIfcChangeGroup&) = delete;
    /// Rolls back what was neither kept nor rolled back. Where there is no memory for that, the model makes up for it
    /// with its next commit, at the latest before anything is saved; what changes until then is undone, too.
    ~KpIfcChangeGroup();

    /// Ends the group; its changes stay. Nothing where it has ended. Needs no memory.
    void keep();
    /// Ends the group; all is as it was when it began: values, inverse attributes, referrers, GlobalIds, order, counts
    /// and names. Instances that were created in it are gone, as erased ones are, but for their names, which are given
    /// again: handles of theirs must not be used any more. Erased instances are back, under the same handles and
    /// addresses. Instances stay marked as changed. References to members are to be obtained anew. Nothing where the
    /// group has ended. Where it throws std::bad_alloc the group is still open and can be rolled back again.
    void rollBack();
    bool isOpen() const { return m_model != nullptr; }

private:
    KpIfcModel* m_model;
};

} // namespace KP_SDAI
