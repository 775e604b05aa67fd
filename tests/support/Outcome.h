#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <string>
#include <string_view>

/// All that opening a file gives, as a text: what was found and where, the order of the instances, their inverse sets,
/// what is written, normalised and not. `partSize`: of the parts that several threads read (SmallParts); 0 for the
/// usual.
std::string outcomeOf(std::string_view content, const KP_SDAI::KpIfcOpenOptions& options, std::size_t partSize = 0);
