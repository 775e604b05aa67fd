#pragma once

#include <KpIfcCore/KpIfcReport.h>

#include "model/FileOrder.h"
#include "part21/GlobalIdCheck.h"
#include "part21/PendingField.h"
#include "part21/SourceLayout.h"

#include <cstddef>
#include <vector>

namespace KP_SDAI {

/// All that reading a stretch of a data section gave, in file order, so that stretches that are read at once can be
/// put together as if they had been read one after the other.
struct ReadRecords {
    explicit ReadRecords(std::size_t listedPerKind) : report(listedPerKind) {}

    ReadInstances instances;
    std::vector<PendingField> pending;
    std::vector<KpIfcEntityBase*> referring; ///< instances that inverse attributes are about
    std::vector<GlobalIdCheck::Noted> globalIds;
    KpIfcReport report;
    SourceLayout layout;
};

/// Thrown where what several threads have read may differ from what one would have read: the source is to be read
/// again by one.
struct ReadAgain {};

} // namespace KP_SDAI
