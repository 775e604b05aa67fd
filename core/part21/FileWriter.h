#pragma once

#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcReport.h>

#include "part21/FileFrame.h"
#include "part21/ProgressMeter.h"
#include "part21/RecordWriter.h"

#include <functional>
#include <string_view>

namespace KP_SDAI {

/// Writes a model as a file of uniform records, one a line, in the order of the file or ascending by name within
/// each data section. Hands it to `sink` in pieces of some hundred kilobytes; false where that returned false. Every
/// record is a step of `progress`.
bool writeNormalised(ModelData& data, const KpIfcHeader& header, const FileFrame& frame, KpIfcReport& report,
                     bool isByName, ProgressMeter& progress, const std::function<bool(std::string_view)>& sink);

} // namespace KP_SDAI
