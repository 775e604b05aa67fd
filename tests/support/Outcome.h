#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <string>
#include <string_view>

/// All that opening a file gives, as a text: what was found and where, the order of the instances, their inverse sets,
/// what is written, normalised and not.
std::string outcomeOf(std::string_view content, const KP_SDAI::KpIfcOpenOptions& options);
