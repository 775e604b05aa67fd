// Uses classes, so it links the module.   early FILE.ifc

#include "Opened.h"

#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcVersion.h>
#include <KpRx/KcString.h>

using namespace KP_SDAI;

int main(int, char** argv) {
    KpIfcFile file = opened(argv[1]);
    int walls = 0;
    for (IFC2X3::IfcWall* wall : file.model()->instances<IFC2X3::IfcWall>()) {
        wall->setDescription("seen");
        if (wall->getDescription().view() == "seen") ++walls;
    }
    std::string text;
    if (file.saveToMemory(text) != KP::eOk || text.find("'seen'") == std::string::npos) return 2;
    std::cout << "early " << runtimeVersion() << " of " << KPIFC_VERSION << ": " << walls << " walls\n";
    return 0;
}
