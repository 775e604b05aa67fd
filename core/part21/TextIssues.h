#pragma once

#include "part21/Findings.h"

#include <KpIfcCore/KpStepText.h>

namespace KP_SDAI {

/// What findings say of the issues that decoding a text meets (KpStepText::Issue).
struct TextIssue {
    unsigned flag;
    KpIfcSeverity severity;
    const char* found;
    const char* expected;
    const char* done;
};

inline constexpr TextIssue kTextIssues[] = {
    {KpStepText::kRawUtf8, KpIfcSeverity::note, "UTF-8 in a text", "characters beyond ASCII by \\X2\\",
     "taken as such"},
    {KpStepText::kRawLatin1, KpIfcSeverity::warning, "bytes in a text that are no UTF-8",
     "characters beyond ASCII by \\X2\\", "taken as ISO 8859-1"},
    {KpStepText::kBadDirective, KpIfcSeverity::warning, "a reverse solidus in a text that opens no directive",
     "two of them", "taken as it is"},
    {KpStepText::kBadCodePoint, KpIfcSeverity::warning, "a code point that does not exist",
     "one up to 10FFFF that is no surrogate", kTextKept},
    {KpStepText::kLineEnd, KpIfcSeverity::note, "a tab or line end in a text", "it encoded by \\X2\\",
     "taken as a part of the text"},
    {KpStepText::kControl, KpIfcSeverity::warning, "a control character in a text", "it encoded by \\X2\\",
     "taken as a part of the text"},
    {KpStepText::kLowerHex, KpIfcSeverity::warning, "hexadecimal digits in lower case in a text", "upper case",
     "taken as what it stands for"},
    {KpStepText::kEmptyRun, KpIfcSeverity::warning, "a run of no characters in a text", "one at least",
     "taken as what it stands for"},
    {KpStepText::kSurrogates, KpIfcSeverity::warning, "a surrogate pair in a text", "the character by \\X4\\",
     "taken as what it stands for"}};

} // namespace KP_SDAI
