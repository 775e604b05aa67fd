#pragma once

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModel.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kpifc {

/// An instance, and one of its attributes or none.
struct Target {
    KP_SDAI::KpIfcEntityBase* instance;
    const KP_SDAI::KpIfcAttributeDefinition* attribute; ///< null where only an instance was named

    /// "#15.FamilyName of IfcPerson"
    std::string text() const;
    /// True where the entity of the instance derives the attribute, whatever a supertype declares.
    bool isDerived() const;
};

/// Finds what users name in one model: "#15.FamilyName", or "#15" alone; a GlobalId may stand for "#15".
class Targets {
public:
    /// `prefix`: what stands before the texts of failures (FileLabels).
    explicit Targets(const KP_SDAI::KpIfcModel& model, std::string prefix = "")
        : m_model(model), m_prefix(std::move(prefix)) {}

    /// Throws Failure where there is no such instance or its entity has no such attribute.
    Target find(std::string_view name);
    /// The handle of an instance, or of a record that is kept as text, by "#15" or a GlobalId. Throws Failure, which
    /// tells what there is instead, where there is none.
    KP_SDAI::KpDbObjectId handle(std::string_view name);

private:
    KP_SDAI::KpIfcEntityBase* instance(std::string_view name);
    std::string nearest(std::uint64_t number) const;
    KP_SDAI::KpDbObjectId handleOfGlobalId(std::string_view globalId) const;

    [[noreturn]] void fail(const std::string& what) const;

    const KP_SDAI::KpIfcModel& m_model;
    const std::string m_prefix;
};

/// A text without the blanks around it.
std::string_view trimmed(std::string_view text);

} // namespace kpifc
