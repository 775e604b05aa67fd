#pragma once

#include <KpIfcCore/KpSpfFilerBase.h>

/// A finding about a field of the record that is being read.
struct KpSpfFilerBase::FieldIssue {
    KP_SDAI::KpIfcFinding finding;
    KP_SDAI::KpIfcSeverity severity;
    bool keep; ///< the text of the field is kept
    std::uint32_t field;
    const char* begin; ///< from here
    const char* end;   ///< to here it was read
    const char* expected;
    const char* found = nullptr; ///< null where that is the text
    const char* done = nullptr;  ///< null where that follows from `keep`
};
