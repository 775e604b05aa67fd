#pragma once

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcModel.h>

#include <optional>
#include <string>
#include <string_view>

namespace kpifc {

/// What people know the instances of one model by. Texts are decoded; they need not be printable.
class Labels {
public:
    explicit Labels(const KP_SDAI::KpIfcModel& model) : m_isUtf8(model.textIsUtf8()) {}

    /// The text that an attribute holds; none where it is unset, holds no text or the entity has none of that name.
    std::optional<std::string> text(const KP_SDAI::KpIfcEntityBase& instance, std::string_view attribute) const;
    std::optional<std::string> name(const KP_SDAI::KpIfcEntityBase& instance) const { return text(instance, "Name"); }
    std::optional<std::string> longName(const KP_SDAI::KpIfcEntityBase& instance) const {
        return text(instance, "LongName");
    }
    std::optional<std::string> globalId(const KP_SDAI::KpIfcEntityBase& instance) const;
    std::optional<double> real(const KP_SDAI::KpIfcEntityBase& instance, std::string_view attribute) const;

    /// `#34 IfcWall "Wall 1"`, printable; `#34 (kept as text)` of a record that is.
    std::string reference(const KP_SDAI::KpDbObjectId& handle) const;

private:
    bool m_isUtf8;
};

/// A name for the terminal, in quotes.
std::string quotedName(std::string_view name);

} // namespace kpifc
