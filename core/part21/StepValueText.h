#pragma once

#include <KpIfcCore/KpStepValue.h>

#include <string>

namespace KP_SDAI {

/// Reads the parameters of a record without a schema, from behind its '(' at `p` to its ')'. Returns the place behind
/// that; null where the text is not well formed.
/// Adds to `textIssues` what decoding texts met (KpStepText::Issue).
const char* readStepValues(const char* p, const char* end, std::vector<KpStepValue>& values, unsigned& textIssues);

/// Writes values, separated by commas, as files have them.
void writeStepValues(const std::vector<KpStepValue>& values, std::string& out);

} // namespace KP_SDAI
