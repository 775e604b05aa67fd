#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <string>

/// The module is loaded before the first test and until the last has run, so that the entity types stand.

/// A new, empty file of the schema.
KP_SDAI::KpIfcFile emptyFile();
/// A file read from a text; fails the test where it cannot be.
KP_SDAI::KpIfcFile opened(const std::string& content);
/// A file with these lines in its data section.
KP_SDAI::KpIfcFile openedRecords(const std::string& records);
/// What would be written.
std::string saved(KP_SDAI::KpIfcFile& file);
/// The lines of the data section that would be written.
std::string savedRecords(KP_SDAI::KpIfcFile& file);
/// Every finding, a line each.
std::string findings(const KP_SDAI::KpIfcReport& report);
