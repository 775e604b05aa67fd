#pragma once

#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <ctime>
#include <initializer_list>
#include <stdexcept>
#include <string>

/// Makes instances of a model by the names of entities and attributes.
class Maker {
public:
    using Handle = KP_SDAI::KpDbObjectId;
    using Handles = KP_SDAI::KpIfcArray<Handle>;
    using Reals = KP_SDAI::KpIfcArray<double>;

    explicit Maker(KP_SDAI::KpIfcModel& model) : m_model(model) {
        const Handle person = make("IfcPerson", {"FamilyName", "Meier"});
        const Handle firm = make("IfcOrganization", {"Name", "Meier Architects"});
        const Handle user = make("IfcPersonAndOrganization", {"ThePerson", person, "TheOrganization", firm});
        const Handle program =
            make("IfcApplication", {"ApplicationDeveloper", firm, "Version", "1", "ApplicationFullName", "Example",
                                    "ApplicationIdentifier", "EX"});
        m_history = make("IfcOwnerHistory", {"OwningUser", user, "OwningApplication", program, "ChangeAction", "ADDED",
                                             "CreationDate", static_cast<int>(std::time(nullptr))});
    }

    /// An instance with these attributes, names and values in turn; with a GlobalId and an owner history where its
    /// entity has them.
    Handle make(const char* entity, std::initializer_list<KP_SDAI::KpIfcVariant> attributes) {
        KP_SDAI::KpIfcEntityBase* instance = m_model.createRooted(entity);
        if (instance) instance->putAttr("OwnerHistory", m_history);
        if (!instance) instance = m_model.create(entity);
        if (!instance) throw std::invalid_argument(std::string("no entity ") + entity);
        for (auto name = attributes.begin(); name != attributes.end(); name += 2) {
            const char* const text = *name->getIf<const char*>();
            if (!instance->putAttr(text, name[1])) throw std::invalid_argument(std::string(entity) + '.' + text);
        }
        return instance->objectId();
    }
    Handle point(const Reals& coordinates) { return make("IfcCartesianPoint", {"Coordinates", coordinates}); }
    Handle direction(const Reals& ratios) { return make("IfcDirection", {"DirectionRatios", ratios}); }
    /// Axes with z upwards.
    Handle axes(const Reals& origin, const Reals& x) {
        return make("IfcAxis2Placement3D",
                    {"Location", point(origin), "Axis", direction({0, 0, 1}), "RefDirection", direction(x)});
    }
    /// Where something stands in relation to the placement of another.
    Handle placement(const Handle& within, const Handle& axes) {
        return make("IfcLocalPlacement", {"PlacementRelTo", within, "RelativePlacement", axes});
    }

private:
    KP_SDAI::KpIfcModel& m_model;
    Handle m_history;
};
