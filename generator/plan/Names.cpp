#include "plan/Names.h"

#include "facts/Text.h"

#include <algorithm>
#include <set>

namespace kpifcgen::plan {

namespace {

using Words = std::set<std::string_view>;

const Words& keywords() {
    // clang-format off
    static const Words words = {
        "alignas", "alignof", "and", "and_eq", "asm", "auto", "bitand", "bitor", "bool", "break", "case",
        "catch", "char", "char16_t", "char32_t", "char8_t", "class", "co_await", "co_return", "co_yield",
        "compl", "concept", "const", "const_cast", "consteval", "constexpr", "constinit", "continue",
        "decltype", "default", "delete", "do", "double", "dynamic_cast", "else", "enum", "explicit", "export",
        "extern", "false", "float", "for", "friend", "goto", "if", "inline", "int", "long", "mutable",
        "namespace", "new", "noexcept", "not", "not_eq", "nullptr", "operator", "or", "or_eq", "private",
        "protected", "public", "register", "reinterpret_cast", "requires", "return", "short", "signed",
        "sizeof", "static", "static_assert", "static_cast", "struct", "switch", "template", "this",
        "thread_local", "throw", "true", "try", "typedef", "typeid", "typename", "union", "unsigned", "using",
        "virtual", "void", "volatile", "wchar_t", "while", "xor", "xor_eq",
    };
    // clang-format on
    return words;
}

/// Macros that common headers of common systems define without a prefix.
const Words& macros() {
    static const Words words = {"BUFSIZ",   "DOMAIN", "EOF",    "ERROR", "FALSE",    "INFINITY", "NAN",    "NULL",
                                "OVERFLOW", "TRUE",   "assert", "errno", "far",      "i386",     "linux",  "major",
                                "makedev",  "max",    "min",    "minor", "near",     "offsetof", "setjmp", "small",
                                "stderr",   "stdin",  "stdout", "unix",  "UNDERFLOW"};
    return words;
}

/// Members of the entity base and of every entity class, and the functions that these call.
const Words& entityMembers() {
    static const Words words = {"Facts",
                                "beforeChange",
                                "beforeHandOut",
                                "close",
                                "facts",
                                "getAttr",
                                "getAttribute",
                                "getInstanceType",
                                "g_pEntityType",
                                "inFields",
                                "instanceName",
                                "isChanged",
                                "isInstanceOf",
                                "isKindOf",
                                "isNamed",
                                "isUncommitted",
                                "objectId",
                                "outFields",
                                "owningModel",
                                "putAttr",
                                "putAttribute",
                                "readFields",
                                "resetInverseCounterParts",
                                "setInverseCounterParts",
                                "testAttr",
                                "testAttrCaseInsensitive",
                                "testAttribute",
                                "unsetAttr",
                                "unsetAttrCaseInsensitive",
                                "unsetAttribute",
                                "writeFields"};
    return words;
}

/// Members of the select base and of every select class.
const Words& selectMembers() {
    static const Words words = {"eUnset",    "eUnresolved",    "isNull",    "setAggregate",     "setBoolean",
                                "setDouble", "setEnumeration", "setHandle", "setHandleD",       "setHandleOnLoad",
                                "setInt",    "setLogical",     "setString", "setUnderlyingType"};
    return words;
}

/// Names that the hand-written half of the module declares in the schema's namespace.
const Words& moduleNames() {
    // clang-format off
    static const Words words = {
        "DescriptorNames", "EnumFacts", "ExplicitProperty", "HierarchyProperty", "InverseMembers",
        "InverseProperty", "RedeclaredProperty", "Select", "SelectAlternative", "SelectFacts", "addProperty",
        "aggregateDescriptors", "as", "constructEntity", "createArrayDescriptor", "createEnumerationDescriptor",
        "createListDescriptor", "createPointerDescriptor", "createSetDescriptor", "createValueDescriptor",
        "derived", "describeListElement", "describeSelect", "describeSetElement", "descriptorSlot", "detail",
        "enterCounterParts", "entityFacts", "enumerationDescriptorName", "enumerationDescriptors", "field",
        "getAttribute", "inverse", "isNamed", "kAggregateFacts", "kBinary", "kDefinedType", "kFirst",
        "kOptional", "kTypeAggregate", "kTypeBoolean", "kTypeEntity", "kTypeEnumeration", "kTypeInteger",
        "kTypeLogical", "kTypeReal", "kTypeString", "kUnique", "literalCode", "literalText", "noAttributes",
        "noCounterparts", "noInverses", "noUniqueRules", "notKept", "opened", "putAttribute", "readFields",
        "selectDescriptors", "setName", "testAttribute", "typeOf", "unsetAttribute", "unsetText", "writeFields",
    };
    // clang-format on
    return words;
}

std::string guarded(std::string name, const Words& taken) {
    if (taken.contains(name)) {
        name += '_';
    }
    return name;
}

std::string text(std::string_view a, std::string_view b, std::string_view c = {}, std::string_view d = {}) {
    std::string joined;
    return joined.append(a).append(b).append(c).append(d);
}

} // namespace

SchemaNames::SchemaNames(std::string_view schema)
    : space(upperCase(schema)), exportMacro("KP" + space + "_EXPORT"), builderClass("Kp" + space + "SchemaBuilder") {}

bool SchemaNames::isHeaderTaken(std::string_view file) const {
    static const Words taken = {"entities", "entity", "enumeration", "properties", "property", "select", "types"};
    return taken.contains(lowerCase(file)) || lowerCase(file) == lowerCase(space);
}

std::string typeSource(std::string_view declaration) {
    return text("types/", declaration, ".cpp");
}
std::string entitySource(std::string_view declaration) {
    return text("entities/", declaration, ".cpp");
}
std::string schemaSource(std::string_view step) {
    return text("schema/", step, ".cpp");
}

std::string moduleSource(std::string_view table) {
    return text("module/", table, ".cpp");
}

std::string className(std::string_view declaration) {
    std::string name(declaration);
    // The runtime's names, which all begin so, are used in the schema's namespace.
    if (name.starts_with("Kp")) {
        return name + '_';
    }
    return guarded(guarded(guarded(std::move(name), keywords()), macros()), moduleNames());
}

std::string enumConstant(std::string_view enumeration, std::string_view literal) {
    return text("k", enumeration, "_", literal) + (literal == "UNSET" ? "_" : "");
}
std::string enumUnsetConstant(std::string_view enumeration) {
    return text("k", enumeration, "_UNSET");
}
std::string enumLiteralTable(std::string_view enumeration) {
    return text("k", enumeration, "Literals");
}

std::string enumFacts(std::string_view enumeration) {
    return text("EnumFacts<", className(enumeration), ">::value");
}

std::string enumDescriptor(std::string_view enumeration) {
    return text("EnumFacts<", className(enumeration), ">::descriptor");
}

std::string selectTagType(std::string_view select) {
    return text("e", select);
}
std::string selectTag(std::string_view alternative) {
    return guarded(text("e", alternative), selectMembers());
}
std::string selectTester(std::string_view alternative) {
    return guarded(text("is", alternative), selectMembers());
}
std::string selectSetter(std::string_view alternative) {
    return guarded(text("set", alternative), selectMembers());
}
std::string selectAlternativeTable(std::string_view select) {
    return text("k", select, "Alternatives");
}
std::string selectFacts(std::string_view select) {
    return text("k", select, "Facts");
}

std::string member(std::string_view attribute) {
    return text("m_", attribute);
}
std::string getter(std::string_view attribute) {
    return guarded(text("get", attribute), entityMembers());
}
std::string setter(std::string_view attribute) {
    return guarded(text("set", attribute), entityMembers());
}
std::string inverseGetter(std::string_view attribute) {
    return text("getInv", attribute);
}

std::string inverseMember() {
    return "m_inverse";
}

std::string instanceGetter(std::string_view attribute, const std::set<std::string>& classNames) {
    std::string name = guarded(guarded(guarded(std::string(attribute), keywords()), macros()), entityMembers());
    // A member function of a class's name would hide the class, or be a constructor.
    while (classNames.contains(name)) {
        name += '_';
    }
    return name;
}

std::string propertyClass(std::string_view entity, std::string_view attribute) {
    return text(entity, attribute, "Property");
}
std::string propertyBuilder(std::string_view entity) {
    return text("build", entity, "Properties");
}

std::string selectTypeOf(std::string_view classOfSelect) {
    return text(classOfSelect, "::g_pType");
}

std::string selectDescriptor(std::string_view classOfSelect, std::string_view which) {
    return text(classOfSelect, "::g_descriptors.", which);
}

std::string entityFacts(std::string_view classOfEntity) {
    return text(classOfEntity, "::s_facts");
}

std::string entityTypeOf(std::string_view classOfEntity) {
    return text(classOfEntity, "::g_pEntityType");
}

} // namespace kpifcgen::plan
