// Prints the properties of all objects of an entity as a table.
//
//     properties FILE.ifc ENTITY

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcPropertySets.h>
#include <KpRx/KcString.h>

#include <iomanip>
#include <iostream>

using namespace KP_SDAI;

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: properties FILE.ifc ENTITY\n";
        return 2;
    }
    KpIfcFile file;
    if (file.open(argv[1]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    KpIfcPropertySets sets(*file.model()); // knows the units of the project
    std::cout << std::left;
    for (const KpIfcEntityBase* object : file.model()->instances(argv[2])) {
        for (const KpIfcPropertyValue& value : sets.of(*object)) {
            KcString text;
            if (!value.value.toString(text)) continue; // has none
            std::cout << std::setw(5) << '#' + std::to_string(object->instanceName()) << ' ' << std::setw(17)
                      << value.set << ' ' << std::setw(21) << value.name << ' ' << text.utf8Ptr();
            if (!value.measure.symbol.empty()) std::cout << ' ' << value.measure.symbol;
            std::cout << (value.fromType ? "  (of its type)\n" : "\n");
        }
    }
    return 0;
}
