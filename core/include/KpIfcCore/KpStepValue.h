#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>

#include <string>
#include <string_view>
#include <vector>

namespace KP_SDAI {

/// One value as the file format knows it, without a schema: a parameter of a record (ISO 10303-21, clause 6).
struct KpStepValue {
    enum class Kind { unset, derived, string, number, enumeration, binary, reference, list, typed };

    Kind kind = Kind::unset;
    /// string: the text in UTF-8; number, reference: as written; enumeration: without its dots; binary: without its
    /// quotes; typed: the keyword.
    std::string text;
    std::vector<KpStepValue> items; ///< of lists and typed values

    static KpStepValue string(std::string text) { return {Kind::string, std::move(text), {}}; }
    static KpStepValue list(std::vector<KpStepValue> items) { return {Kind::list, {}, std::move(items)}; }
    friend bool operator==(const KpStepValue&, const KpStepValue&) = default;

    /// Reads the one value that a text spells, blanks and comments around it allowed. False, and `value` undefined,
    /// where it spells none. Digits, points and exponents of numbers may still stand where numbers have none.
    KPIFCCORE_EXPORT static bool read(std::string_view text, KpStepValue& value);
    /// As files spell it; texts are encoded.
    KPIFCCORE_EXPORT std::string spelled() const;
};

} // namespace KP_SDAI
