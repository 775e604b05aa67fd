#pragma once

#include <KpIfcCore/KpIfcModel.h>

#include <optional>
#include <string>
#include <vector>

namespace kpifc {

/// How an object of a model is told from others; texts are UTF-8, "" where there is none.
struct ObjectIdentity {
    explicit ObjectIdentity(const KP_SDAI::KpIfcEntityBase& object);

    std::uint64_t id;
    const char* type;
    std::string globalId;
    std::string name;
};

/// The objects and types that "#15", a GlobalId or the name of an entity names; all where nothing is named. Throws
/// Failure where it names none that could have properties.
std::vector<const KP_SDAI::KpIfcEntityBase*> propertyObjects(const KP_SDAI::KpIfcModel& model,
                                                             const std::optional<std::string>& name);

} // namespace kpifc
