#pragma once

#include "report/PageLinks.h"
#include "report/PageNodes.h"
#include "report/PageProperties.h"

#include <KpIfcCore/KpIfcModel.h>

#include <functional>
#include <string>

namespace kpifc::page {

/// Appends the model as the page's script reads it: elements of JSON, each parsed when it is needed. Instances are
/// known by their places among those of the page, entities by their indexes.
///
///     data-index    ids, types, names, globalIds, longNames: of all instances (0 for none; longNames by place; names
///                   also what other entities call a name)
///                   sets: their property sets (PageProperties), 0 for none
///                   entities[]: name, supertypes, attributes, units of attributes by their indexes; of those without
///                   instances here the name alone
///                   labels[]: of links: inverse, entity, attribute, whether a relation (PageLinks)
///                   tree: nodes, sizes (with all below), flags (1 contained, 2 an element, 4 shown before), in the
///                   order of BuildingTree; roots, others: which of them; loose: places of what stands nowhere
///                   chunk: how many instances each of the data-N has
///     data-N        of each instance its values (PageValues; of GlobalId and Name null where they are in the index)
///     and
///                   its links: label, places, label, places, ...; of a record kept as text that text instead
///     data-props    PageProperties
///
/// `step` is called for every instance. Throws Interrupted.
void appendData(std::string& out, const KP_SDAI::KpIfcModel& model, const BuildingTree& tree, const PageNodes& nodes,
                PageProperties& properties, const std::function<void()>& step);

} // namespace kpifc::page
