#include "emit/Emitters.h"
#include "emit/Layout.h"
#include "emit/Printer.h"

namespace kpifcgen::emit {

namespace {

constexpr auto headerBody = R"(
$summary$
enum $class$ : std::int32_t {
    $constants$
    $unset$,
};

template <>
struct $export$ EnumFacts<$class$> {
    static const KpIfcEnumFacts value;
    static KpIfcDescriptorSlot descriptor;
};
)";

constexpr auto sourceBody = R"(
static constexpr const char* $table$[] = {
    $texts$
};

const KpIfcEnumFacts $facts$ = {
    "$name$", $count$, $table$, &descriptor};

template <>
constexpr const wchar_t* enumerationDescriptorName<$class$> = L"$descriptorName$";
constinit KpIfcDescriptorSlot $descriptor$(
    createEnumerationDescriptor<$class$>);
)";

} // namespace

std::vector<File> emitEnumeration(const plan::EnumerationPlan& enumeration, const plan::Frame& frame) {
    std::string constants;
    std::vector<std::string> texts;
    for (const auto& [constant, text] : enumeration.literals) {
        constants += constant + ",\n";
        texts.push_back("\"" + text + "\"");
    }
    texts.push_back("\"\"");
    return {header(frame, enumeration.files,
                   print(headerBody, {{"summary", comment(0, enumeration.summary)},
                                      {"class", enumeration.className},
                                      {"export", frame.exportMacro},
                                      {"constants", constants},
                                      {"unset", enumeration.unsetConstant}})),
            source(frame, enumeration.files, "\"types/EnumerationFacts.h\"",
                   print(sourceBody, {{"table", enumeration.literalTable},
                                      {"texts", fill(4, "", texts, ",", ",")},
                                      {"facts", enumeration.facts},
                                      {"class", enumeration.className},
                                      {"descriptorName", enumeration.descriptorName},
                                      {"descriptor", enumeration.descriptor},
                                      {"name", enumeration.name},
                                      {"count", std::to_string(enumeration.literals.size())}}))};
}

} // namespace kpifcgen::emit
