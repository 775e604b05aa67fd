#pragma once

#include "emit/File.h"
#include "plan/ModulePlan.h"

namespace kpifcgen::emit {

File emitEntityHeader(const plan::EntityPlan& entity, const plan::Frame& frame);
File emitEntitySource(const plan::EntityPlan& entity, const plan::Frame& frame);

/// True where the class has a nested struct of constant rows.
inline bool hasFacts(const plan::EntityPlan& entity) {
    return !entity.attributeRows.empty() || !entity.recordRows.empty() || !entity.uniqueRows.empty() ||
           !entity.inverseRows.empty();
}

} // namespace kpifcgen::emit
