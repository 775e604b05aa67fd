#include "emit/Emitters.h"
#include "emit/Layout.h"
#include "emit/Printer.h"

namespace kpifcgen::emit {

namespace {

constexpr auto headerBody = R"(
$summary$
class $export$ $class$ : public Select {
public:
    enum $tagType$ : std::int32_t {
        $tags$
        eUnset,
        eUnresolved,
    };

    /// The select's dictionary type, filled when the schema is built.
    static KpIfcDefinedType* g_pType;
    /// Where the select's descriptors are kept (KpIfcVariantType::Desc).
    static $descriptors$ g_descriptors;

    $class$() : Select(eUnset) {}
    KpIfcNameType* type() const override;

    $testers$

    $setters$
protected:
    const SelectFacts& facts() const override;
};
)";

constexpr auto testerSignature = "bool $tester$() const";
constexpr auto testerStatement = "return tag() == $tag$;";

constexpr auto setterSignature = "void $setter$($argument$ value)";
constexpr auto setterStatement = "$store$($tag$, value);";

constexpr auto descriptorName = R"(
static constexpr auto $member$ = L"$text$";
)";

/// Depth of a member of a class.
constexpr std::size_t memberIndentation = 4;

constexpr auto sourceBody = R"(
KpIfcDefinedType* $class$::g_pType = nullptr;

template <>
struct DescriptorNames<$class$> {
    $descriptorNames$
};
constinit $descriptors$ $class$::g_descriptors = $describe$<$class$>();

static constexpr SelectAlternative $table$[] = {
    $rows$
};
static constexpr SelectFacts $facts$ = {
    "$name$", $count$, $table$};

KpIfcNameType* $class$::type() const {
    return typeOf(g_pType);
}

const SelectFacts& $class$::facts() const {
    return $facts$;
}
)";

} // namespace

std::vector<File> emitSelect(const plan::SelectPlan& select, const plan::Frame& frame) {
    std::string tags, testers, setters, rows;
    for (const auto& alternative : select.alternatives) {
        tags += alternative.tag + ",\n";
        testers += inlineFunction(memberIndentation, print(testerSignature, {{"tester", alternative.tester}}),
                                  print(testerStatement, {{"tag", alternative.tag}})) +
                   "\n";
        rows += "{" + alternative.row + "},\n";
        if (alternative.hasSetter) {
            setters += inlineFunction(
                           memberIndentation,
                           print(setterSignature, {{"setter", alternative.setter}, {"argument", alternative.argument}}),
                           print(setterStatement, {{"store", alternative.store}, {"tag", alternative.tag}})) +
                       "\n";
        }
    }
    if (!setters.empty()) {
        setters += "\n";
    }
    std::string descriptorNames;
    for (const auto& [member, text] : select.descriptorNames) {
        descriptorNames += print(descriptorName, {{"member", member}, {"text", text}});
    }
    return {header(frame, select.files,
                   print(headerBody, {{"summary", comment(0, select.summary)},
                                      {"export", frame.exportMacro},
                                      {"class", select.className},
                                      {"tagType", select.tagType},
                                      {"descriptors", select.descriptors},
                                      {"tags", tags},
                                      {"testers", testers},
                                      {"setters", setters}})),
            source(frame, select.files, "\"types/SelectFacts.h\"",
                   print(sourceBody, {{"class", select.className},
                                      {"descriptorNames", descriptorNames},
                                      {"descriptors", select.descriptors},
                                      {"describe", select.describe},
                                      {"table", select.alternativeTable},
                                      {"rows", rows},
                                      {"facts", select.facts},
                                      {"name", select.name},
                                      {"count", std::to_string(select.alternatives.size())}}))};
}

} // namespace kpifcgen::emit
