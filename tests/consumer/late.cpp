// Goes by names and links the runtime only, which finds the module.   late FILE.ifc

#include "Opened.h"

#include <IFC2X3/IfcWall.h> // what the class does inline needs no symbol of the module
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcVariant.h>

using namespace KP_SDAI;

int main(int, char** argv) {
    KpIfcFile file = opened(argv[1]);
    int walls = 0;
    for (KpIfcEntityBase* wall : file.model()->instances("IfcWall")) {
        KpIfcVariant name;
        KpAnsiString text;
        if (wall->getAttr("name", name) && name.get(text) &&
            text.view() == static_cast<IFC2X3::IfcWall*>(wall)->getName().view())
            ++walls;
    }
    std::string error;
    std::cout << "late " << KpIfcModule::load("IFC2X3", error)->path() << ": " << walls << " walls\n";
    return 0;
}
