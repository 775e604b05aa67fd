#pragma once

#include "facts/Diagnostics.h"
#include "facts/Schema.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What to emit for one schema: finished strings and flags, in the order in which they are printed. Emitters add
/// braces, line breaks and indentation only.
namespace kpifcgen::plan {

/// What all files of a module have in common.
struct Frame {
    std::string schemaFile; ///< its name, without folders
    std::string space;
    std::string exportMacro;
};

/// A pair of files. Includes are finished ("<IFC2X3/IfcWall.h>"), sorted, without repetition.
struct Files {
    std::string headerPath;
    std::string sourcePath;
    std::string include; ///< of the header
    std::vector<std::string> headerIncludes;
    std::vector<std::string> sourceIncludes; ///< besides the header and what all sources of the family include
};

struct EnumerationPlan {
    struct Literal {
        std::string constant;
        std::string text;
    };

    Files files;
    std::string name; ///< as declared
    std::string className;
    std::string summary;
    std::vector<Literal> literals;
    std::string unsetConstant;
    std::string literalTable;
    std::string facts;
    std::string descriptor;     ///< where its descriptor is kept
    std::string descriptorName; ///< what the descriptor shows
};

struct SelectPlan {
    struct Row {
        std::string member;
        std::string text;
    };
    struct Alternative {
        std::string tag;
        std::string tester;
        std::string row; ///< of the table of alternatives, without braces
        bool hasSetter = false;
        std::string setter;
        std::string argument; ///< type of the setter's argument
        std::string store;    ///< operation of the base class that the setter calls
    };

    Files files;
    std::string name; ///< as declared
    std::string className;
    std::string summary;
    std::string tagType;
    std::string alternativeTable;
    std::string facts;
    std::vector<Alternative> alternatives;
    std::string descriptors;          ///< type of the member that keeps its descriptors
    std::string describe;             ///< what makes that member
    std::string heldIn;               ///< where aggregates hold it: which of the descriptors is that of them
    std::vector<Row> descriptorNames; ///< what each descriptor shows: its member and the text
};

struct EntityPlan {
    enum class AccessorKind { Value, Reference, Aggregate };

    /// An explicit attribute that the entity itself declares.
    struct Attribute {
        AccessorKind kind = AccessorKind::Value;
        std::string type;
        std::string member;
        std::string initializer;
        std::string getter;
        std::string setter;
        std::string array;          ///< of aggregates
        std::string instanceGetter; ///< of references
        std::string instanceClass;  ///< of references
    };

    /// A row of facts: an operation and its arguments.
    struct Row {
        std::string operation;
        std::vector<std::string> arguments;
    };

    Files files;
    std::string name; ///< as declared
    std::string className;
    std::string summary;
    std::string baseClass;
    std::string baseFacts; ///< address of the supertype's facts, or of none
    bool isRoot = false;
    bool isAbstract = false;
    std::vector<std::string> forwardDeclarations;
    std::vector<Attribute> attributes;
    std::string inverseMember; ///< holds the inverse attributes that the entity itself declares
    std::vector<std::string> inverseGetters;
    std::vector<Row> attributeRows;
    std::vector<Row> recordRows; ///< where fields are redeclared as derived: all fields
    std::vector<Row> uniqueRows;
    std::vector<Row> inverseRows;
    std::vector<Row> counterpartRows; ///< an inverse attribute that an attribute of this entity feeds
    std::string counterpartsBase;     ///< where it has such rows: the nearest class above that enters its own
};

/// The steps that register the schema in the dictionary: a source with a table of rows each.
struct SchemaPlan {
    /// Braces around the texts of a row; its parts are finished expressions.
    using Row = std::vector<std::string>;

    struct Step {
        std::string path;
        std::vector<std::string> includes;
    };
    struct EntityRow {
        Row entity;
        std::vector<Row> explicitAttributes;
        std::vector<Row> derivedAttributes;
        std::vector<Row> inverseAttributes;
    };
    struct SelectRow {
        Row select;
        std::vector<std::string> members;
    };

    std::string builderClass;
    std::string umbrellaPath;
    std::vector<std::string> entityIncludes;
    Step simpleTypesStep;
    std::vector<Row> simpleTypes;
    Step enumerationsStep;
    std::vector<Row> enumerations; ///< in byte order of the names
    Step entitiesStep;
    std::vector<EntityRow> entities; ///< each after its supertype
    Step selectsStep;
    std::vector<SelectRow> selects;
    Step aggregationsStep;
    std::vector<Row> namedAggregations;
    std::vector<Row> anonymousAggregations;
};

/// The property classes, one for each attribute, and what fills the collection of each entity with them.
struct PropertiesPlan {
    struct Property {
        std::string className;
        std::string baseClass;
        std::string arguments; ///< of the base's constructor
    };
    struct Collection {
        std::string builder; ///< the function that fills it
        std::vector<Property> properties;
    };

    std::string headerPath;
    std::string include; ///< of the header
    std::string baseInclude;
    std::string sourcePath;
    std::string entitiesInclude;
    std::vector<Collection> collections;
};

/// The descriptors of the module: where each is kept, in the order in which they are released.
struct DescriptorsPlan {
    std::string path;
    std::vector<std::string> includes;
    std::vector<std::string> selects;
    std::vector<std::string> aggregates;
    std::vector<std::string> enumerations;
};

struct ModulePlan {
    Frame frame;
    std::vector<EnumerationPlan> enumerations;
    std::vector<SelectPlan> selects;
    std::vector<EntityPlan> entities;
    SchemaPlan schema;
    DescriptorsPlan descriptors;
    PropertiesPlan properties;
};

/// None, and diagnostics, where the schema has something that no code can be generated for.
std::optional<ModulePlan> planModule(const facts::Schema& schema, std::string_view schemaFile,
                                     facts::Diagnostics& diagnostics);

} // namespace kpifcgen::plan
