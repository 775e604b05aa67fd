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

const KpIfcEntityFacts& $class$::facts() {
    return s_facts;
}

$class$::$class$() = default;
$class$::$class$(const $class$&) = default;
$class$& $class$::operator=(const $class$&) = default;
$class$::~$class$() = default;

$instanceGetters$
KpIfcEntityType* $class$::getInstanceType() const {
    return g_pEntityType;
}

$fields$

bool $class$::getAttr(const KpAnsiString& name, KpIfcVariant& value) const {
    return getAttribute(*this, s_facts, name, value);
}

bool $class$::putAttr(const KpAnsiString& name, const KpIfcVariant& value) {
    return putAttribute(*this, s_facts, name, value);
}

bool $class$::testAttr(const KpAnsiString& name) const {
    return testAttribute(*this, s_facts, name);
}

void $class$::unsetAttr(const KpAnsiString& name) {
    unsetAttribute(*this, s_facts, name);
}

$counterPartOperations$
bool $class$::isInstanceOf(const KpIfcEntityType* type) const {
    return type == g_pEntityType;
}

bool $class$::isInstanceOf(const char* typeName) const {
    return isNamed(g_pEntityType, typeName);
}

bool $class$::isKindOf(const KpIfcEntityType* type) const {
    $isKindOfType$
}

bool $class$::isKindOf(const char* typeName) const {
    $isKindOfName$
}
)";

constexpr auto factsStruct = R"(
struct $class$::Facts {
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

constexpr auto noFields = R"(
KP::ErrorStatus $class$::inFields(KpSpfFilerBase*) {
    return KP::eOk;
}

KP::ErrorStatus $class$::outFields(KpSpfFilerBase*) {
    return KP::eOk;
}
)";

constexpr auto counterParts = R"(
void $class$::setInverseCounterParts() {
    $base$::setInverseCounterParts();
    enterCounterParts(*this, Facts::counterparts);
}

void $class$::resetInverseCounterParts() {}

)";

constexpr auto inheritedFields = R"(
KP::ErrorStatus $class$::inFields(KpSpfFilerBase* filer) {
    return $base$::inFields(filer);
}

KP::ErrorStatus $class$::outFields(KpSpfFilerBase* filer) {
    return $base$::outFields(filer);
}
)";

constexpr auto ownFields = R"(
KP::ErrorStatus $class$::inFields(KpSpfFilerBase* filer) {
    $readInherited$
    return readFields(*this, *filer, Facts::$rows$);
}

KP::ErrorStatus $class$::outFields(KpSpfFilerBase* filer) {
    $writeInherited$
    return writeFields(*this, *filer, Facts::$rows$);
}
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

std::string printFields(const plan::EntityPlan& entity) {
    using Fields = plan::EntityPlan::Fields;
    const bool callsBase = entity.fields == Fields::Own && !entity.isRoot;
    switch (entity.fields) {
    case Fields::None: return print(noFields, {{"class", entity.className}});
    case Fields::Inherited: return print(inheritedFields, {{"class", entity.className}, {"base", entity.baseClass}});
    case Fields::Own:
    case Fields::WholeRecord: break;
    }
    return print(ownFields, {{"class", entity.className},
                             {"readInherited", callsBase ? entity.baseClass + "::inFields(filer);" : ""},
                             {"writeInherited", callsBase ? entity.baseClass + "::outFields(filer);" : ""},
                             {"rows", entity.fields == Fields::Own ? "attributes" : "record"}});
}

std::string printCounterParts(const plan::EntityPlan& entity) {
    if (entity.counterpartRows.empty()) {
        return {};
    }
    return print(counterParts, {{"class", entity.className}, {"base", entity.counterpartsBase}});
}

std::string printIsKindOfType(const plan::EntityPlan& entity) {
    std::vector<std::string> tests = {"type == g_pEntityType"};
    for (const std::string& type : entity.chain) {
        tests.push_back("type == " + type);
    }
    const bool isAlone = entity.chain.empty();
    return fill(statementIndentation, isAlone ? "return type && " : "return type && (", tests, " ||",
                isAlone ? ";" : ");");
}

std::string printIsKindOfName(const plan::EntityPlan& entity) {
    std::vector<std::string> tests = {"isNamed(g_pEntityType, typeName)"};
    for (const std::string& type : entity.chain) {
        tests.push_back("isNamed(" + type + ", typeName)");
    }
    return fill(statementIndentation, "return ", tests, " ||", ";");
}

} // namespace

File emitEntitySource(const plan::EntityPlan& entity, const plan::Frame& frame) {
    return source(frame, entity.files, "\"entities/EntityClass.h\"",
                  print(body, {{"class", entity.className},
                               {"factsStruct", printFactsStruct(entity)},
                               {"facts", printFacts(entity)},
                               {"instanceGetters", printInstanceGetters(entity)},
                               {"fields", printFields(entity)},
                               {"counterPartOperations", printCounterParts(entity)},
                               {"isKindOfType", printIsKindOfType(entity)},
                               {"isKindOfName", printIsKindOfName(entity)}}));
}

std::vector<File> emitEntity(const plan::EntityPlan& entity, const plan::Frame& frame) {
    return {emitEntityHeader(entity, frame), emitEntitySource(entity, frame)};
}

} // namespace kpifcgen::emit
