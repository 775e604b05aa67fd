#include "emit/Entity.h"
#include "emit/Layout.h"
#include "emit/Printer.h"

namespace kpifcgen::emit {

namespace {

constexpr auto body = R"(
$forwardDeclarations$
$summary$
class $export$ $class$ : public $base$ {
public:
    /// The entity's type in the dictionary; null until the schema is built.
    static KpIfcEntityType* g_pEntityType;

    ~$class$() override;

    $accessors$
    bool getAttr(const KpAnsiString& name, KpIfcVariant& value) const override {
        return getAttribute(*this, s_facts, name, value);
    }
    KpIfcEntityType* getInstanceType() const override { return g_pEntityType; }
    bool putAttr(const KpAnsiString& name, const KpIfcVariant& value) override {
        return putAttribute(*this, s_facts, name, value);
    }
    using KpIfcEntityBase::testAttr;
    bool testAttr(const KpAnsiString& name) const override { return testAttribute(*this, s_facts, name); }
    void unsetAttr(const KpAnsiString& name) override { unsetAttribute(*this, s_facts, name); }
    KP::ErrorStatus inFields(KpSpfFilerBase* filer) override { return readFields(*this, *filer, s_facts); }
    KP::ErrorStatus outFields(KpSpfFilerBase* filer) override { return writeFields(*this, *filer, s_facts); }
    $counterParts$
    bool isInstanceOf(const KpIfcEntityType* type) const override { return type == g_pEntityType; }
    bool isInstanceOf(const char* typeName) const override { return isNamed(g_pEntityType, typeName); }
    bool isKindOf(const KpIfcEntityType* type) const override {
        return $isOwnType$$orBaseIsKindOfType$;
    }
    bool isKindOf(const char* typeName) const override {
        return isNamed(g_pEntityType, typeName)$orBaseIsKindOfName$;
    }

    /// What the schema says about the entity and where its attributes are stored.
    static constexpr const KpIfcEntityFacts& facts() { return s_facts; }

protected:
    $facts$
    static const KpIfcEntityFacts s_facts;
    $gap$
    $members$
};
)";

constexpr auto valueAccessors = R"(
$constGetter$
void $setter$(const $type$& value) {
    beforeChange();
    $member$ = value;
}

)";

constexpr auto referenceAccessors = R"(
KpDbObjectId $getter$() const { return $member$; }
void $setter$(const KpDbObjectId& value) {
    beforeChange();
    $member$ = value;
}
/// The referenced instance, converted unchecked; null where there is none.
$instanceClass$* $instanceGetter$() const;

)";

constexpr auto aggregateAccessors = R"(
$type$& $getter$() {
    beforeHandOut();
    return $member$;
}
$constGetter$
void $getter$($array$& values) const {
    values.clear();
    $member$.copyTo(values);
}
void $setter$(const $array$& values) {
    beforeChange();
    $member$.assign(values, *this);
}
void $setter$(const $type$& values) {
    beforeChange();
    $member$ = values;
}

)";

constexpr auto inverseSignature = "void $getter$(KpIfcArray<KpDbObjectId>& values) const";
constexpr auto inverseStatement = "$member$.copyTo(*this, $index$, values);";

constexpr auto counterParts = R"(
void setInverseCounterParts() override;
void resetInverseCounterParts() override;
)";

/// Depth of a member of a class.
constexpr std::size_t memberIndentation = 4;

std::string constGetter(const plan::EntityPlan::Attribute& attribute) {
    return inlineFunction(memberIndentation, "const " + attribute.type + "& " + attribute.getter + "() const",
                          "return " + attribute.member + ";");
}

std::string accessors(const plan::EntityPlan::Attribute& attribute) {
    using Kind = plan::EntityPlan::AccessorKind;
    switch (attribute.kind) {
    case Kind::Value:
        return print(valueAccessors, {{"type", attribute.type},
                                      {"constGetter", constGetter(attribute)},
                                      {"setter", attribute.setter},
                                      {"member", attribute.member}});
    case Kind::Reference:
        return print(referenceAccessors, {{"getter", attribute.getter},
                                          {"setter", attribute.setter},
                                          {"member", attribute.member},
                                          {"instanceClass", attribute.instanceClass},
                                          {"instanceGetter", attribute.instanceGetter}});
    case Kind::Aggregate:
        return print(aggregateAccessors, {{"type", attribute.type},
                                          {"constGetter", constGetter(attribute)},
                                          {"array", attribute.array},
                                          {"getter", attribute.getter},
                                          {"setter", attribute.setter},
                                          {"member", attribute.member}});
    }
    return {};
}

std::string allAccessors(const plan::EntityPlan& entity) {
    std::string text;
    for (const auto& attribute : entity.attributes) {
        text += accessors(attribute);
    }
    for (std::size_t i = 0; i < entity.inverseGetters.size(); ++i) {
        text +=
            inlineFunction(memberIndentation, print(inverseSignature, {{"getter", entity.inverseGetters[i]}}),
                           print(inverseStatement, {{"member", entity.inverseMember}, {"index", std::to_string(i)}})) +
            "\n";
    }
    return text + (entity.inverseGetters.empty() ? "" : "\n");
}

std::string members(const plan::EntityPlan& entity) {
    std::string text;
    for (const auto& attribute : entity.attributes) {
        text += attribute.type + " " + attribute.member + attribute.initializer + ";\n";
    }
    if (!entity.inverseGetters.empty()) {
        text += "InverseMembers<" + std::to_string(entity.inverseGetters.size()) + "> " + entity.inverseMember + ";\n";
    }
    return text;
}

} // namespace

File emitEntityHeader(const plan::EntityPlan& entity, const plan::Frame& frame) {
    const std::string memberLines = members(entity);
    const std::string isOwnType = "type && type == g_pEntityType";
    const std::string orBase = " || " + entity.baseClass + "::";
    return header(frame, entity.files,
                  print(body, {{"forwardDeclarations", lines(entity.forwardDeclarations, "class ", ";") +
                                                           (entity.forwardDeclarations.empty() ? "" : "\n")},
                               {"summary", comment(0, entity.summary)},
                               {"export", frame.exportMacro},
                               {"class", entity.className},
                               {"base", entity.baseClass},
                               {"accessors", allAccessors(entity)},
                               {"counterParts", entity.counterpartRows.empty() ? "" : print(counterParts, {})},
                               {"isOwnType", entity.isRoot ? isOwnType : "(" + isOwnType + ")"},
                               {"orBaseIsKindOfType", entity.isRoot ? "" : orBase + "isKindOf(type)"},
                               {"orBaseIsKindOfName", entity.isRoot ? "" : orBase + "isKindOf(typeName)"},
                               {"facts", hasFacts(entity) ? "struct Facts;" : ""},
                               {"gap", memberLines.empty() ? "" : "\n"},
                               {"members", memberLines}}));
}

} // namespace kpifcgen::emit
