#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <filesystem>
#include <string>
#include <string_view>

/// The bytes of a file; fails the test where it cannot be read.
std::string contentOf(const std::filesystem::path& path);
/// Where a file for one test can stand; no other test and no other run of this one gets the same.
std::filesystem::path temporaryPath(std::string_view name);
/// A STEP file with these lines in its data section.
std::string stepFile(std::string_view records);
/// The records of such a file; fails the test where it has another frame.
std::string recordsOf(std::string_view content);

/// A file read from a text; fails the test where it cannot be.
KP_SDAI::KpIfcFile opened(std::string_view content);
KP_SDAI::KpIfcFile openedRecords(std::string_view records);
/// What would be written normalised; fails the test where it cannot be.
std::string saved(KP_SDAI::KpIfcFile& file);
/// What would be written with all that did not change left as it was; fails the test where it cannot be.
std::string rewritten(KP_SDAI::KpIfcFile& file);
/// Makes every instance count as changed.
void touchAll(KP_SDAI::KpIfcFile& file);
/// Every finding, a line each.
std::string findings(const KP_SDAI::KpIfcReport& report);
