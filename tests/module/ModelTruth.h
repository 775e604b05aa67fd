#pragma once

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModel.h>

#include <string>

/// What a model says about itself must be what its instances say, one by one: inverse attributes, referrers, GlobalIds,
/// counts, file order; and no instance may refer to anything that is not there.
void expectTruth(const KP_SDAI::KpIfcModel& model);

/// All of a file that undoing brings back, as a text: what is written, names, counts.
std::string stateOf(KP_SDAI::KpIfcFile& file);
