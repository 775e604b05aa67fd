#pragma once

#include "Output.h"
#include "PropertyObjects.h"

#include <KpIfcCore/KpIfcPropertySets.h>

#include <string>
#include <vector>

/// How kpifc props prints what objects have.
namespace kpifc::props {

using Objects = std::vector<const KP_SDAI::KpIfcEntityBase*>;
using Values = std::vector<KP_SDAI::KpIfcPropertyValue>;

/// One object as a table, set by set.
void appendTable(std::string& out, const ObjectIdentity& object, const Values& values);
/// One object as a line of JSON, which begins with `opening` (FileLabels).
void appendJson(std::string& out, const ObjectIdentity& object, const Values& values, const std::string& opening);
/// Objects as CSV (RFC 4180) with a line of names, one line an object; `withEmpty`: also those without properties.
void printCsv(Output& output, const KP_SDAI::KpIfcModel& model, const Objects& objects, bool withEmpty);

} // namespace kpifc::props
