#include "emit/Emitters.h"
#include "emit/Entity.h"
#include "emit/Layout.h"
#include "emit/Printer.h"

namespace kpifcgen::emit {

namespace {

constexpr auto body = R"(
KpIfcEntityType* $class$::g_pEntityType = nullptr;

$factsStruct$
constinit const KpIfcEntityFacts $class$::s_facts = entityFacts<$class$>(
    $facts$

$class$::~$class$() = default;
$instanceGetters$
$counterPartOperations$
)";

constexpr auto factsStruct = R"(
struct KPIFC_INTERNAL $class$::Facts {
    $attributes$
    $record$
    $unique$
    $inverses$
    $counterparts$
};

)";

constexpr auto table = R"(
static constexpr $type$ $name$[] = {
    $rows$
};
)";

constexpr auto instanceGetter = R"(

$instanceClass$* $class$::$instanceGetter$() const {
    return opened<$instanceClass$>($member$);
}
)";

constexpr auto counterParts = R"(

void $class$::setInverseCounterParts() {
    $base$::setInverseCounterParts();
    enterCounterParts(*this, Facts::counterparts);
}

void $class$::resetInverseCounterParts() {}
)";

/// Depth of a statement in a function and of a table's row in the struct.
constexpr std::size_t statementIndentation = 4;
constexpr std::size_t rowIndentation = 8;

std::string printTable(std::string_view type, std::string_view name, const std::vector<plan::EntityPlan::Row>& rows) {
    if (rows.empty()) {
        return {};
    }
    std::string text;
    for (const auto& [operation, arguments] : rows) {
        const bool isPlain = operation.empty();
        text += fill(rowIndentation, isPlain ? "{" : operation + "(", arguments, ",", isPlain ? "}," : "),") + "\n";
    }
    return print(table, {{"type", type}, {"name", name}, {"rows", text}});
}

std::string printFactsStruct(const plan::EntityPlan& entity) {
    if (!hasFacts(entity)) {
        return {};
    }
    return print(factsStruct,
                 {{"class", entity.className},
                  {"attributes", printTable("KpIfcAttributeFacts", "attributes", entity.attributeRows)},
                  {"record", printTable("KpIfcAttributeFacts", "record", entity.recordRows)},
                  {"unique", printTable("KpIfcUniqueFacts", "unique", entity.uniqueRows)},
                  {"inverses", printTable("KpIfcInverseFacts", "inverses", entity.inverseRows)},
                  {"counterparts", printTable("KpIfcCounterpartFacts", "counterparts", entity.counterpartRows)}});
}

/// What the facts of the class are made from.
std::string printFacts(const plan::EntityPlan& entity) {
    return fill(statementIndentation, "",
                {"\"" + entity.name + "\"", entity.isAbstract ? "true" : "false", entity.baseFacts,
                 entity.attributeRows.empty() ? "noAttributes" : "Facts::attributes",
                 entity.recordRows.empty() ? "noAttributes" : "Facts::record",
                 entity.uniqueRows.empty() ? "noUniqueRules" : "Facts::unique",
                 entity.inverseRows.empty() ? "noInverses" : "Facts::inverses",
                 entity.counterpartRows.empty() ? "noCounterparts" : "Facts::counterparts"},
                ",", ");");
}

std::string printInstanceGetters(const plan::EntityPlan& entity) {
    std::string text;
    for (const auto& attribute : entity.attributes) {
        if (attribute.kind == plan::EntityPlan::AccessorKind::Reference) {
            text += print(instanceGetter, {{"instanceClass", attribute.instanceClass},
                                           {"class", entity.className},
                                           {"instanceGetter", attribute.instanceGetter},
                                           {"member", attribute.member}});
        }
    }
    return text;
}

std::string printCounterParts(const plan::EntityPlan& entity) {
    if (entity.counterpartRows.empty()) {
        return {};
    }
    return print(counterParts, {{"class", entity.className}, {"base", entity.counterpartsBase}});
}

} // namespace

File emitEntitySource(const plan::EntityPlan& entity, const plan::Frame& frame) {
    return source(frame, entity.files, "\"entities/EntityClass.h\"",
                  print(body, {{"class", entity.className},
                               {"factsStruct", printFactsStruct(entity)},
                               {"facts", printFacts(entity)},
                               {"instanceGetters", printInstanceGetters(entity)},
                               {"counterPartOperations", printCounterParts(entity)}}));
}

std::vector<File> emitEntity(const plan::EntityPlan& entity, const plan::Frame& frame) {
    return {emitEntityHeader(entity, frame), emitEntitySource(entity, frame)};
}

} // namespace kpifcgen::emit
