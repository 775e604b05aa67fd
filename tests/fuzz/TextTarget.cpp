#include "Harness.h"

#include <KpIfcCore/KpStepText.h>
#include <KpIfcCore/KpStepValue.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <string>

using namespace KP_SDAI;

/// Texts, numbers and single values as STEP files spell them: what is encoded decodes to the same, what is decoded can
/// be encoded, and both come to rest after one turn.
void fuzzTarget(std::string_view bytes) {
    std::string decoded;
    unsigned issues = KpStepText::kNone;
    KpStepText::decode(bytes, decoded, issues);
    require(decoded == KpStepText::decode(bytes), "both ways to decode agree");
    require(decoded.size() <= 3 * bytes.size(), "no text grows beyond measure");

    std::string encoded;
    KpStepText::encode(decoded, encoded);
    require(KpStepText::isEncoded(encoded), "what was encoded can stand between apostrophes");
    unsigned none = KpStepText::kNone;
    std::string again;
    KpStepText::decode(encoded, again, none);
    requireSame(again, decoded, "what was encoded decodes to the same");
    require(none == KpStepText::kNone, "what was encoded is clean");
    const std::string closed = encoded + '\'';
    require(KpStepText::stringEnd(closed.data(), closed.data() + closed.size()) == closed.data() + closed.size(),
            "what was encoded ends where it ends");

    const char* const end = bytes.data() + bytes.size();
    const char* const found = KpStepText::stringEnd(bytes.data(), end);
    require(!found || (found > bytes.data() && found <= end && found[-1] == '\''), "texts end behind an apostrophe");

    // Any bytes as a text: those that are UTF-8 come back.
    std::string raw;
    KpStepText::encode(bytes, raw);
    const std::string once = KpStepText::decode(raw);
    std::string twice;
    KpStepText::encode(once, twice);
    requireSame(KpStepText::decode(twice), once, "texts come back");

    KpStepValue value;
    if (KpStepValue::read(bytes, value)) {
        KpStepValue same;
        require(KpStepValue::read(value.spelled(), same), "what was spelled can be read");
        require(same == value, "what was spelled reads as the same");
    }

    double number = 0;
    if (bytes.size() >= sizeof number) {
        std::memcpy(&number, bytes.data(), sizeof number);
        if (std::isfinite(number)) {
            char text[KpStepText::kRealRoom];
            const char* const behind = KpStepText::writeReal(number, text);
            double read = 0;
            const auto result = std::from_chars(text, behind, read);
            require(behind <= text + sizeof text && result.ptr == behind && read == number, "numbers come back");
        }
    }
}
