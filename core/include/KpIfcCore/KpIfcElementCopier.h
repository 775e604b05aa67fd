#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

namespace KP_SDAI {

class KpAnsiString;
class KpArena;
class KpDbObjectId;
class KpIfcSelect;

/// What becomes of elements of aggregates whose copies belong to another model.
class KPIFCCORE_EXPORT KpIfcElementCopier {
public:
    KpIfcElementCopier(const KpIfcElementCopier&) = delete;
    KpIfcElementCopier& operator=(const KpIfcElementCopier&) = delete;
    virtual ~KpIfcElementCopier();

    /// The other model's memory.
    virtual KpArena& arena() = 0;
    /// Turns a copy of the original's element into what the other model holds in its place; false where the copy of the
    /// aggregate goes without it.
    virtual bool adapt(KpDbObjectId& reference) = 0;
    virtual bool adapt(KpIfcSelect& select) = 0;
    virtual bool adapt(KpAnsiString& text) = 0;

protected:
    KpIfcElementCopier() = default;
};

} // namespace KP_SDAI
