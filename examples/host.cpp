// A host that links the runtime only and drives the schema module through what it exports: loads it, looks at its
// dictionary, makes a model by names, reads it back, and lets go of everything.
//
//     host MODULE OUT.ifc

#include <IFC2X3/IfcPerson.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcProperty.h>
#include <KpIfcCore/KpIfcSchema.h>
#include <KpIfcCore/KpIfcVariant.h>
#include <KpRx/KcString.h>

#include <dlfcn.h>

#include <iostream>
#include <memory>
#include <stdexcept>

using namespace KP_SDAI;

namespace {

void require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

/// The module as a library of the system, and its three plain functions.
struct Module {
    using LifeCycle = KpIfcModuleLifeCycle* (*)();
    using SchemaPointer = KpIfcSchema* (*)();
    using BuildProperty = bool (*)(KpIfcEntityBase*, KpIfcProperty*&, KpTypeCodeKind&);

    explicit Module(const char* path) : library(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
        require(library, "the module cannot be loaded");
        lifeCycle = reinterpret_cast<LifeCycle>(dlsym(library, "kpGetModuleLifeCycleApp"));
        schema = reinterpret_cast<SchemaPointer>(dlsym(library, "kpifcGetSchemaPointer"));
        buildProperty = reinterpret_cast<BuildProperty>(dlsym(library, "kpIfcBuildPropertyForSimple"));
        require(lifeCycle && schema && buildProperty, "the module lacks one of its functions");
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { dlclose(library); }

    void* library;
    LifeCycle lifeCycle = nullptr;
    SchemaPointer schema = nullptr;
    BuildProperty buildProperty = nullptr;
};

void walkDictionary(const KpIfcSchema& schema) {
    std::size_t attributes = 0;
    for (const Dictionary::Entry& entry : schema.entities().entries())
        attributes += entry.object->as<KpIfcEntityType>()->attributes().size();
    std::cout << schema.name() << ": " << schema.entities().count() << " entities declare " << attributes
              << " attributes\n";
    for (const KpIfcAttributeDefinition* attribute : schema.findEntity("ifcperson")->allAttributes())
        std::cout << "  IfcPerson." << attribute->name() << ": " << attribute->declarationText() << '\n';
}

/// Two instances, made and filled without a class.
void fill(KpIfcModel& model) {
    KpIfcEntityBase* person = model.create("IfcPerson");
    KpIfcEntityBase* role = model.create("IfcActorRole");
    require(person && role, "instances cannot be made");
    const KpIfcArray<KpIfcVariant> titles{KpIfcVariant("Dr."), KpIfcVariant("Prof.")};
    require(person->putAttr("familyname", "Meier") && person->putAttr("PrefixTitles", titles), "texts are refused");
    require(role->putAttr("role", "architect"), "a literal is refused");
    require(person->putAttr("roles", KpIfcArray<KpDbObjectId>{role->objectId()}), "a handle is refused");
    require(!person->putAttr("familyname", 5) && !person->putAttr("surname", "Meier"), "anything is taken");

    // A value in the alternative of a select is put as a whole: the pointer that is got is to the member.
    KpIfcEntityBase* width = model.create("IfcPropertySingleValue");
    KpIfcVariant nominal;
    require(width->putAttr("name", "Width") && width->getAttr("nominalvalue", nominal), "a property cannot be filled");
    KpIfcSelect* select = nominal.type()->storedSelect(nominal);
    require(select->underlyingTypeName("IfcLengthMeasure") && select->putValue(0.3), "a select is refused");
}

/// An instance as a table of properties.
void showProperties(const KpIfcEntityBase& instance) {
    for (const KpIfcProperty* property : instance.getInstanceType()->allProperties()) {
        KpIfcVariant value;
        KcString text;
        if (!instance.testAttr(property->name())) continue;
        if (property->getAttribute(&instance, value) == KP::eOk && value.toString(text))
            std::cout << "  " << property->name().constStr() << " = " << text.utf8Ptr() << '\n';
    }
}

void showEntry(const Module& module, KpIfcEntityBase& entry) {
    KpIfcProperty* made = nullptr;
    KpTypeCodeKind kind = kTypeNone;
    module.buildProperty(&entry, made, kind);
    const std::unique_ptr<KpIfcProperty> property(made);
    KpIfcVariant value;
    double width = 0;
    require(property && kind == kTypeReal, "there is no property");
    require(property->getAttribute(&entry, value) == KP::eOk && value.get(width), "the property has no value");
    require(property->putAttribute(&entry, 2 * width) == KP::eOk, "the property takes no value");
    std::cout << "  Width was " << width << '\n';
}

void drive(const char* modulePath, const char* out) {
    const Module module(modulePath);
    require(!module.schema(), "there is a schema before there is one");
    {
        std::string error;
        const std::shared_ptr<KpIfcModule> life = KpIfcModule::loadFile(modulePath, error); // initialises the module
        require(life && module.schema() == &life->schema(), "the module has not become the runtime's");
        require(module.lifeCycle()->initialise(), "to initialise again does harm");
        walkDictionary(*module.schema());

        KpIfcFile file;
        require(file.create("IFC2X3") == KP::eOk, "no file can be begun");
        fill(*file.model());
        require(file.save(out) == KP::eOk, "the file cannot be written");

        KpIfcFile again;
        require(again.open(out) == KP::eOk && again.report().isClean(), "the file cannot be read");
        KpIfcModel& model = *again.model();
        for (KpIfcEntityBase* instance : model.instances("IfcPerson")) {
            // With the class's header the members are at hand, without a call into the module.
            std::cout << "read " << static_cast<IFC2X3::IfcPerson*>(instance)->getFamilyName().constStr() << '\n';
            showProperties(*instance);
        }
        for (KpIfcEntityBase* instance : model.instances("IfcPropertySingleValue")) showEntry(module, *instance);
        require(again.save(out) == KP::eOk, "the file cannot be written again");
    }
    require(!module.schema(), "the schema outlives its last user");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: host MODULE OUT.ifc\n";
        return 2;
    }
    try {
        drive(argv[1], argv[2]);
        std::cout << "wrote " << argv[2] << '\n';
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "host: " << failure.what() << '\n';
    }
    return 1;
}
