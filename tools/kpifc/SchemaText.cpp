#include "Files.h"
#include "Schema.h"
#include "SchemaLayout.h"
#include "SchemaUses.h"
#include "TypeText.h"

#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcExpressText.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <fmt/format.h>

#include <algorithm>

using namespace KP_SDAI;

namespace kpifc::schema_text {

namespace {

constexpr std::size_t kLabels = 12;         ///< column behind the labels of lists
constexpr std::size_t kFarthestColumn = 44; ///< of what stands behind names

using Names = std::vector<std::string>;

template <class Types>
Names namesOf(const Types& types) {
    Names names;
    for (const auto* type : types) {
        names.emplace_back(type->displayName());
    }
    return names;
}

void listUnlessEmpty(SchemaLayout& out, std::string_view label, const Names& names) {
    if (!names.empty()) {
        out.list(label, kLabels, names);
    }
}

void usingTypes(SchemaLayout& out, const SchemaUses& uses) {
    listUnlessEmpty(out, "Base of", namesOf(uses.types));
    listUnlessEmpty(out, "Member of", namesOf(uses.selects));
}

void usingAttributes(SchemaLayout& out, const SchemaUses& uses) {
    if (uses.entities.empty()) {
        return;
    }
    out.emptyLine();
    out.line("Used by");
    Names labels;
    for (const auto& [entity, attributes] : uses.entities) {
        labels.emplace_back(entity->displayName());
    }
    const std::size_t column = columnBehind(2, labels, kFarthestColumn);
    for (const auto& [entity, attributes] : uses.entities) {
        Names names;
        for (const KpIfcAttributeDefinition* attribute : attributes) {
            const bool isInverse = attribute->kind() == KpIfcAttributeKind::inverseAttribute;
            const bool isDerived = attribute->kind() == KpIfcAttributeKind::derivedAttribute;
            names.push_back(attribute->displayName() + std::string(isInverse   ? " (inverse)"
                                                                   : isDerived ? " (derived)"
                                                                               : ""));
        }
        out.list(fmt::format("  {}", entity->displayName()), column, names);
    }
}

/// The name as the schema declares it, with what it redeclares.
std::string declaredName(const KpIfcAttributeDefinition& attribute) {
    const auto* derived = attribute.as<KpIfcDerivedAttributeDefinition>();
    const KpIfcExplicitAttributeDefinition* redeclared = derived ? derived->redeclaredAttribute() : nullptr;
    return redeclared ? fmt::format("SELF\\{}.{}", redeclared->owner()->displayName(), redeclared->name())
                      : attribute.displayName();
}

/// Words of a declaration; what stands behind FOR stays with it.
Names piecesOf(std::string_view declaration) {
    Names pieces;
    while (!declaration.empty()) {
        const std::size_t end = declaration.starts_with("FOR ") ? declaration.size() : declaration.find(' ');
        pieces.emplace_back(declaration.substr(0, end));
        declaration.remove_prefix(std::min(pieces.back().size() + 1, declaration.size()));
    }
    return pieces;
}

void attributes(SchemaLayout& out, const KpIfcEntityType& entity) {
    constexpr std::size_t indent = 11;
    const std::vector<const KpIfcAttributeDefinition*> all = entity.allAttributes();
    if (all.empty()) {
        out.emptyLine();
        out.line("No attributes");
    }
    Names names;
    for (const KpIfcAttributeDefinition* attribute : all) {
        names.push_back(declaredName(*attribute));
    }
    const std::size_t column = columnBehind(indent, names, kFarthestColumn);

    const KpIfcEntityType* declaredIn = nullptr;
    std::size_t place = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const KpIfcAttributeDefinition& attribute = *all[i];
        if (attribute.owner() != declaredIn) {
            declaredIn = attribute.owner();
            out.emptyLine();
            out.line(declaredIn == &entity ? "Own attributes"
                                           : fmt::format("Inherited from {}", declaredIn->displayName()));
        }
        std::string mark;
        Names declaration = piecesOf(attribute.declarationText());
        switch (attribute.kind()) {
        case KpIfcAttributeKind::explicitAttribute:
            mark = std::to_string(++place);
            if (entity.redeclarationOf(attribute)) {
                declaration.emplace_back("(* in files)");
            }
            break;
        case KpIfcAttributeKind::derivedAttribute: mark = "derived"; break;
        case KpIfcAttributeKind::inverseAttribute: mark = "inverse"; break;
        }
        out.row(fmt::format("{:>{}}  {}", mark, indent - 2, names[i]), column, declaration);
    }
}

void uniqueRules(SchemaLayout& out, const KpIfcEntityType& entity) {
    bool isFirst = true;
    for (const KpIfcEntityType* declaring = &entity; declaring; declaring = declaring->superType()) {
        const KpIfcEntityFacts* facts = declaring->facts();
        for (std::uint32_t i = 0; facts && i < facts->uniqueRuleCount; ++i) {
            if (isFirst) {
                out.emptyLine();
                out.line("Unique");
                isFirst = false;
            }
            Names names = piecesOf(facts->uniqueRules[i].attributes);
            if (declaring != &entity) {
                names.back() += fmt::format(" (from {})", declaring->displayName());
            }
            out.list(fmt::format("  {}", facts->uniqueRules[i].label), kLabels, names);
        }
    }
}

/// What kind of value a member of a select stands for.
std::string memberText(const KpIfcNameType& member) {
    const auto* type = member.as<KpIfcDefinedType>();
    return !type ? "entity" : type->select() ? "select" : type->enumeration() ? "enumeration" : definitionText(*type);
}

void members(SchemaLayout& out, const KpIfcSelectType& select) {
    const Names names = namesOf(select.members());
    const std::size_t column = columnBehind(2, names, kFarthestColumn);
    out.emptyLine();
    out.line("Members");
    for (const KpIfcNameType* member : select.members()) {
        out.row(fmt::format("  {}", member->displayName()), column, piecesOf(memberText(*member)));
    }
    const std::vector<const KpIfcNameType*> flattened = select.flattenedMembers();
    if (flattened != select.members()) {
        out.emptyLine();
        out.line(fmt::format("A value is one of {} types", flattened.size()));
        out.list("", 2, namesOf(flattened));
    }
}

} // namespace

std::string overview(const KpIfcSchema& schema) {
    const KpIfcSchemaCounts counts = schema.counts();
    SchemaLayout out;
    out.line(fmt::format("Schema {}, version {}.{}", schema.name(), schema.majorVersion(), schema.minorVersion()));
    out.emptyLine();
    const auto row = [&out](std::size_t count, const std::string& text) {
        out.line(fmt::format("{:>7}  {}", grouped(count), text));
    };
    row(counts.entities, fmt::format("entities, {} of them abstract", grouped(counts.abstractEntities)));
    row(counts.explicitAttributes, "explicit attributes");
    row(counts.derivedAttributes, "derived attributes");
    row(counts.inverseAttributes, "inverse attributes");
    row(counts.definedTypes, "defined types");
    row(counts.enumerations, fmt::format("enumerations with {}", counted(counts.literals, "literal")));
    row(counts.selects, "selects");
    row(counts.anonymousAggregations, "anonymous aggregations");
    out.emptyLine();
    out.line("kpifc schema NAME tells about one of them, say IfcWall or IfcLengthMeasure.");
    return out.text();
}

std::string entity(const KpIfcEntityType& entity) {
    const SchemaUses uses(*entity.schema(), entity);
    Names supertypes;
    for (const KpIfcEntityType* above = entity.superType(); above; above = above->superType()) {
        supertypes.emplace_back(above->displayName());
    }
    SchemaLayout relations;
    listUnlessEmpty(relations, "Supertypes", supertypes);
    listUnlessEmpty(relations, "Subtypes", namesOf(entity.subTypes()));
    usingTypes(relations, uses);

    SchemaLayout out;
    out.line(fmt::format("{}: {}entity of {}", entity.displayName(), entity.isAbstract() ? "abstract " : "",
                         entity.schema()->name()));
    out.append(relations);
    attributes(out, entity);
    uniqueRules(out, entity);
    usingAttributes(out, uses);
    return out.text();
}

std::string type(const KpIfcSchema& schema, const KpIfcDefinedType& type) {
    const SchemaUses uses(schema, type);
    const KpIfcSelectType* select = type.select();
    const char* kind = "defined type";
    SchemaLayout relations;
    if (const KpIfcEnumerationType* enumeration = type.enumeration()) {
        kind = "enumeration";
        Names literals;
        for (const KpAnsiString& literal : enumeration->literals()) {
            literals.emplace_back(literal.view());
        }
        relations.list("Literals", kLabels, literals);
    } else if (select) {
        kind = "select";
    } else {
        relations.row("Definition", kLabels, piecesOf(chainText(type)));
    }
    usingTypes(relations, uses);

    SchemaLayout out;
    out.line(fmt::format("{}: {} of {}", type.displayName(), kind, schema.name()));
    out.append(relations);
    if (select) {
        members(out, *select);
    }
    usingAttributes(out, uses);
    return out.text();
}

} // namespace kpifc::schema_text
