#pragma once

#include <set>
#include <string>
#include <string_view>

/// Every identifier and path of the generated code. Names that C++ or the hand-written half of the module needs for
/// itself get an underscore at their end.
namespace kpifcgen::plan {

/// Names that follow from the schema's own name.
struct SchemaNames {
    explicit SchemaNames(std::string_view schema);

    /// "IFC2X3/IfcWall.h", as it is included.
    std::string header(std::string_view file) const { return space + "/" + std::string(file) + ".h"; }
    /// "include/IFC2X3/IfcWall.h", below the output folder.
    std::string headerPath(std::string_view file) const { return "include/" + header(file); }

    /// True where a header of the hand-written half has that name, in whatever case.
    bool isHeaderTaken(std::string_view file) const;

    std::string space;
    std::string exportMacro;
    std::string builderClass;
};

std::string typeSource(std::string_view declaration);
std::string entitySource(std::string_view declaration);
std::string schemaSource(std::string_view step);
std::string moduleSource(std::string_view table);

/// Class of an entity or select, type of an enumeration.
std::string className(std::string_view declaration);

// Enumerations.
std::string enumConstant(std::string_view enumeration, std::string_view literal);
std::string enumUnsetConstant(std::string_view enumeration);
std::string enumLiteralTable(std::string_view enumeration);
/// Where an enumeration keeps its facts and its descriptor.
std::string enumFacts(std::string_view enumeration);
std::string enumDescriptor(std::string_view enumeration);

// Selects.
std::string selectTagType(std::string_view select);
std::string selectTag(std::string_view alternative);
std::string selectTester(std::string_view alternative);
std::string selectSetter(std::string_view alternative);
std::string selectAlternativeTable(std::string_view select);
std::string selectFacts(std::string_view select);
/// Where the class keeps its dictionary type and its descriptors.
std::string selectTypeOf(std::string_view classOfSelect);
std::string selectDescriptor(std::string_view classOfSelect, std::string_view which);

// Entities.
std::string member(std::string_view attribute);
std::string getter(std::string_view attribute);
std::string setter(std::string_view attribute);
std::string inverseGetter(std::string_view attribute);
/// In which a class keeps the entity's inverse attributes.
std::string inverseMember();
/// Of the instance that a reference attribute refers to; `classNames` are all that className() made for the schema.
std::string instanceGetter(std::string_view attribute, const std::set<std::string>& classNames);
std::string propertyClass(std::string_view entity, std::string_view attribute);
/// What fills the property collection of an entity; of one without attributes, the hand-written function that adds
/// nothing.
std::string propertyBuilder(std::string_view entity);
inline constexpr std::string_view emptyPropertyBuilder = "buildNoProperties";
/// Where the class keeps its dictionary type and its facts.
std::string entityTypeOf(std::string_view classOfEntity);
std::string entityFacts(std::string_view classOfEntity);

} // namespace kpifcgen::plan
