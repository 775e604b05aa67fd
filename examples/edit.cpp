// Gives an attribute of all instances of an entity another value, without any class of the schema.
//
//     edit IN.ifc OUT.ifc ENTITY ATTRIBUTE TEXT

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcVariant.h>
#include <KpRx/KcString.h>

#include <iostream>

using namespace KP_SDAI;

int main(int argc, char** argv) {
    if (argc != 6) {
        std::cerr << "usage: edit IN.ifc OUT.ifc ENTITY ATTRIBUTE TEXT\n";
        return 2;
    }
    const char* const entity = argv[3];
    const char* const attribute = argv[4];
    const char* const text = argv[5];
    KpIfcFile file;
    if (file.open(argv[1]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    for (KpIfcEntityBase* instance : file.model()->instances(entity)) {
        KpIfcVariant value;
        KcString former;
        if (instance->testAttr(attribute) && instance->getAttr(attribute, value)) value.toString(former);
        // Values convert to the type of the attribute. A text that is no literal of an enumeration unsets it.
        if (!instance->putAttr(attribute, text) || !instance->testAttr(attribute)) {
            std::cerr << '#' << instance->instanceName() << ": " << attribute << " cannot be " << text << '\n';
            return 2;
        }
        std::cout << '#' << instance->instanceName() << " was '" << former.utf8Ptr() << "'\n";
    }
    // What was not changed is written byte for byte as it was read.
    if (file.save(argv[2]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    return 0;
}
