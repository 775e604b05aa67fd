#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <string>
#include <string_view>

/// What targets that read files share.

/// Keeps the module loaded, which would else come and go with each input.
void keepModule();
/// A STEP file with these lines in its data section.
std::string framed(std::string_view records);
/// What would be written; ends the target where that fails.
std::string written(KP_SDAI::KpIfcFile& file, bool normalised);
/// What would be written for the data section alone, normalised.
std::string writtenRecords(KP_SDAI::KpIfcFile& file);
/// Reads what this system wrote; ends the target where that fails.
KP_SDAI::KpIfcFile reopened(const std::string& content);
/// What a model says about itself is what its instances say: referrers, inverse attributes, counts, order.
void requireTrueIndexes(const KP_SDAI::KpIfcModel& model);
/// Whatever the content: it is refused with a reason, or written as it is; normalised, it reads as the same and is
/// normalised. Asking and checking change nothing.
void requireRoundTrip(std::string_view content);
