// Opens a building, shows what is in it, reads and changes it through typed accessors, and writes it back.
//
//     first_steps IN.ifc OUT.ifc

#include <IFC2X3/IfcBuildingStorey.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelContainedInSpatialStructure.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcFile.h>

#include <iostream>

using namespace IFC2X3;
using namespace KP_SDAI;

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: first_steps IN.ifc OUT.ifc\n";
        return 2;
    }
    KpIfcFile file;
    if (file.open(argv[1]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    for (const KpIfcReportEntry& finding : file.report().entries()) std::cerr << finding.text() << '\n';
    KpIfcModel& model = *file.model();
    std::cout << argv[1] << ": schema " << model.schema().name() << ", " << model.count() << " instances\n";

    // References are handles; as<T>() opens one as the class that it is, or gives null.
    for (IfcRelContainedInSpatialStructure* relation : model.instances<IfcRelContainedInSpatialStructure>()) {
        const auto* storey = as<IfcBuildingStorey>(relation->getRelatingStructure());
        if (!storey) continue;
        std::cout << "storey " << storey->getName() << " at " << storey->getElevation() << '\n';
        for (const KpDbObjectId& element : std::as_const(*relation).getRelatedElements())
            if (const auto* wall = as<IfcWall>(element))
                std::cout << "  wall " << wall->getName() << " " << wall->getGlobalId() << '\n';
    }
    for (const IfcPropertySingleValue* property : model.instances<IfcPropertySingleValue>()) {
        const IfcValue& value = property->getNominalValue();
        double number = 0;
        if (value.isIfcPositiveLengthMeasure() && value.getDouble(number))
            std::cout << "property " << property->getName() << " = " << number << '\n';
    }

    // Setters take values of the attribute's own type.
    for (IfcWall* wall : model.instances<IfcWall>()) {
        wall->setDescription("seen by first_steps");
        break;
    }
    if (file.save(argv[2]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    std::cout << "wrote " << argv[2] << '\n';
    return 0;
}
