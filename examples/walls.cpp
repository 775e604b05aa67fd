// Lists the walls of a building with the storeys that they stand in.
//
//     walls FILE.ifc

#include <IFC2X3/IfcBuildingStorey.h>
#include <IFC2X3/IfcRelContainedInSpatialStructure.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcFile.h>

#include <iostream>

using namespace IFC2X3;
using namespace KP_SDAI;

/// The storey that contains a wall; null where none does.
const IfcBuildingStorey* storeyOf(const IfcWall& wall) {
    KpIfcArray<KpDbObjectId> relations;
    wall.getInvContainedInStructure(relations); // whatever refers to the wall as an element that it contains
    for (const KpDbObjectId& handle : relations)
        if (const auto* relation = as<IfcRelContainedInSpatialStructure>(handle))
            if (const auto* storey = as<IfcBuildingStorey>(relation->getRelatingStructure())) return storey;
    return nullptr;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: walls FILE.ifc\n";
        return 2;
    }
    KpIfcFile file;
    if (file.open(argv[1]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    for (const IfcWall* wall : file.model()->instances<IfcWall>()) {
        std::cout << '#' << wall->instanceName() << ' ' << wall->getGlobalId();
        if (!wall->getName().isUnset()) std::cout << ' ' << wall->getName();
        const IfcBuildingStorey* storey = storeyOf(*wall);
        if (storey && !storey->getName().isUnset()) std::cout << ", " << storey->getName();
        std::cout << '\n';
    }
    return 0;
}
