// Makes a building with four walls from nothing, in metres.
//
//     new_building OUT.ifc

#include "Maker.h"

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcPropertySets.h>

using namespace KP_SDAI;
using Handles = Maker::Handles;
using Reals = Maker::Reals;

void build(Maker m) {
    const auto unit = [&](auto type, auto name) { return m.make("IfcSIUnit", {"UnitType", type, "Name", name}); };
    const Handles units{unit("LENGTHUNIT", "METRE"), unit("AREAUNIT", "SQUARE_METRE"),
                        unit("VOLUMEUNIT", "CUBIC_METRE"), unit("PLANEANGLEUNIT", "RADIAN")};
    const auto origin = m.axes({0, 0, 0}, {1, 0, 0});
    const auto space =
        m.make("IfcGeometricRepresentationContext", {"ContextType", "Model", "CoordinateSpaceDimension", 3, "Precision",
                                                     1e-5, "WorldCoordinateSystem", origin});
    const auto si = m.make("IfcUnitAssignment", {"Units", units});
    auto whole = m.make("IfcProject", {"Name", "Hut", "RepresentationContexts", Handles{space}, "UnitsInContext", si});
    KpDbObjectId place; // null: of the site, that of the world
    for (const char* entity : {"IfcSite", "IfcBuilding", "IfcBuildingStorey"}) {
        place = m.placement(place, origin);
        const auto part = m.make(entity, {"Name", entity + 3, "ObjectPlacement", place, "CompositionType", "ELEMENT"});
        m.make("IfcRelAggregates", {"RelatingObject", whole, "RelatedObjects", Handles{part}});
        whole = part;
    }

    const auto centre = m.make("IfcAxis2Placement2D", {"Location", m.point({2.35, 0.15})});
    const auto base =
        m.make("IfcRectangleProfileDef", {"ProfileType", "AREA", "Position", centre, "XDim", 4.7, "YDim", 0.3});
    const auto solid = m.make("IfcExtrudedAreaSolid", {"SweptArea", base, "Position", origin, "ExtrudedDirection",
                                                       m.direction({0, 0, 1}), "Depth", 2.5});
    const Reals corners[] = {{0, 0, 0}, {5, 0, 0}, {5, 5, 0}, {0, 5, 0}};
    const Reals ways[] = {{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
    Handles walls;
    for (int i = 0; i < 4; ++i) {
        const auto body =
            m.make("IfcShapeRepresentation", {"ContextOfItems", space, "RepresentationIdentifier", "Body",
                                              "RepresentationType", "SweptSolid", "Items", Handles{solid}});
        const auto shape = m.make("IfcProductDefinitionShape", {"Representations", Handles{body}});
        const auto where = m.placement(place, m.axes(corners[i], ways[i]));
        walls.append(m.make("IfcWall", {"Name", "Wall", "ObjectPlacement", where, "Representation", shape}));
        std::string error;
        setProperty(*walls[i].openObject(), "Pset_WallCommon", "IsExternal", "IfcBoolean", true, error);
    }
    m.make("IfcRelContainedInSpatialStructure", {"RelatingStructure", whole, "RelatedElements", walls});
}

int main(int argc, char** argv) {
    KpIfcFile file;
    if (argc != 2 || file.create("IFC2X3") != KP::eOk) return 2;
    file.header().setTexts("FILE_DESCRIPTION", 0, {"ViewDefinition [CoordinationView]"});
    build(Maker(*file.model()));
    return file.save(argv[1]) == KP::eOk ? 0 : 2;
}
