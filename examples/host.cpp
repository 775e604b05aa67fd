// Loads the schema module by hand and calls the three functions that it exports.
//
//     host MODULE FILE.ifc

#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSimpleProperty.h>
#include <KpRx/KcString.h>

#include <dlfcn.h>

#include <iostream>

using namespace KP_SDAI;

/// A function of a library, as the type of the pointer says.
template <class Function>
void find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
}

int main(int argc, char** argv) {
    void* const library = argc == 3 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (!library) {
        std::cerr << "usage: host MODULE FILE.ifc\n";
        return 2;
    }
    KpIfcModuleLifeCycle* (*lifeCycle)();
    KpIfcSchema* (*schema)();
    bool (*buildProperty)(KpIfcEntityBase*, KpIfcProperty*&, KpTypeCodeKind&);
    find(library, "kpGetModuleLifeCycleApp", lifeCycle);
    find(library, "kpifcGetSchemaPointer", schema);
    find(library, "kpIfcBuildPropertyForSimple", buildProperty);
    if (!lifeCycle || !schema || !buildProperty || !lifeCycle()->initialise()) return 2;
    std::cout << schema()->name() << ": " << schema()->entities().count() << " entities\n";

    KpIfcFile file; // uses the same module, where it is the one beside the runtime
    if (file.open(argv[2]) != KP::eOk) {
        std::cerr << file.error() << '\n';
        return 2;
    }
    for (KpIfcEntityBase* entry : file.model()->instances("IfcSimpleProperty")) {
        KpIfcProperty* property = nullptr; // to be deleted
        KpTypeCodeKind kind = kTypeNone;
        KpIfcVariant value;
        KcString name, text;
        buildProperty(entry, property, kind);
        if (const auto* simple = dynamic_cast<KpIfcSimpleProperty*>(property))
            if (simple->getName(entry, name) == KP::eOk && simple->getAttribute(entry, value) == KP::eOk &&
                value.toString(text))
                std::cout << name.utf8Ptr() << " = " << text.utf8Ptr() << '\n';
        delete property;
    }
    file.close(); // the last file of a schema takes it down
    dlclose(library);
    return 0;
}
