#pragma once

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcSchema.h>

#include <string_view>
#include <unordered_map>
#include <vector>

namespace kpifc {

/// When an instance that refers to what is extracted comes along, though nothing that is extracted refers to it. All
/// knowledge of entities and attributes that extraction needs is here.
struct ExtractionRule {
    enum class Kind {
        none,      ///< it does not
        statement, ///< a relation that says something of its members (what defines and associates): with any of them
        link,      ///< any other relation: when all that it links is there, of each aggregate at least one
        addition   ///< adds to what `members` refers to, such as a style: with any of it
    };
    Kind kind = Kind::none;
    /// Of statements and additions.
    const KP_SDAI::KpIfcAttributeFacts* members = nullptr;

    /// A link by which a whole holds parts has both attributes: chosen wholes come with their parts.
    const KP_SDAI::KpIfcAttributeFacts* whole = nullptr;
    const KP_SDAI::KpIfcAttributeFacts* parts = nullptr;
    bool isPlace = false; ///< parts have their place in the whole, so they bring it along
};

/// The rules of one schema, found by name once.
class ExtractionRules {
public:
    explicit ExtractionRules(const KP_SDAI::KpIfcSchema& schema);

    /// The rule for instances of an entity.
    const ExtractionRule& of(const KP_SDAI::KpIfcEntityType* entity);

    const KP_SDAI::KpIfcEntityType* root;
    const KP_SDAI::KpIfcEntityType* object;
    const KP_SDAI::KpIfcEntityType* project;

private:
    struct Entry {
        const KP_SDAI::KpIfcEntityType* entity;
        ExtractionRule rule;
    };

    std::vector<Entry> m_entries; ///< the first that fits an entity or a supertype counts
    std::unordered_map<const KP_SDAI::KpIfcEntityType*, ExtractionRule> m_rules;
};

} // namespace kpifc
