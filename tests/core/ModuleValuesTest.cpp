#include "ModulePath.h"

#include <KpIfcCore/KpIfcAggrAccess.h>
#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcVariantTypes.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <memory>
#include <set>
#include <string>

namespace {

using namespace KP_SDAI;

/// Gets, converts and puts a value of every attribute, and asks for every descriptor that the dictionary leads to; the
/// names of those of the module that were met.
std::set<std::wstring> useDescriptors(const KpIfcSchema& schema) {
    std::set<std::wstring> names;
    const auto meet = [&](const KpIfcVariantType& type) { names.insert(type.displayName()); };
    for (const Dictionary::Entry& entry : schema.types().entries())
        if (const KpIfcEnumerationType* type = schema.findType(entry.name)->enumeration())
            meet(type->facts()->descriptor->value());
    for (const Dictionary::Entry& entry : schema.entities().entries()) {
        const KpIfcEntityType& type = *schema.findEntity(entry.name);
        const std::unique_ptr<KpIfcEntityBase> instance(type.createInstance());
        for (const KpIfcAttributeFacts* row : type.recordFields()) {
            if (row->kind == KpIfcFieldKind::derived) continue;
            KpIfcVariant value;
            EXPECT_TRUE(instance->getAttr(row->name, value)) << entry.name << '.' << row->name;
            EXPECT_TRUE(instance->putAttr(row->name, value)) << entry.name << '.' << row->name;
            if (row->select) {
                meet(row->select->value.value());
                meet(row->select->pointer.value());
            }
            if (!row->aggregate || row->aggregate->element != KpIfcElementKind::select) continue;
            meet(*value.type());
            // The aggregate knows the type of its elements, and takes an array of them.
            KpIfcVariant element, elements;
            const KpIfcVariantType& elementType =
                *value.type()->aggregate(value.data())->implementation()->elementType();
            meet(elementType);
            EXPECT_TRUE(elementType.createVariant(element));
            EXPECT_TRUE(instance->putAttr(row->name, KpIfcArray<KpIfcVariant>{element}));
            EXPECT_TRUE(instance->testAttr(row->name));
        }
    }
    return names;
}

/// Values by name between the module's coming and going: every descriptor goes with it and is made anew. That none is
/// left behind or used afterwards, the address sanitizer tells.
TEST(ModuleValues, DescriptorsComeAndGoWithTheModule) {
    std::set<std::wstring> first;
    for (int round = 0; round < 100; ++round) {
        const std::shared_ptr<KpIfcModule> module = loadModule();
        ASSERT_TRUE(module);
        if (round % 10) { // mostly quickly
            const std::unique_ptr<KpIfcEntityBase> instance(
                module->schema().findEntity("IfcTrimmedCurve")->createInstance());
            KpIfcVariant value;
            ASSERT_TRUE(instance->getAttr("Trim1", value) && value.type()->isAggregate());
            ASSERT_TRUE(instance->putAttr("Trim1", value));
            ASSERT_TRUE(instance->putAttr("MasterRepresentation", "PARAMETER"));
            ASSERT_TRUE(instance->getAttr("MasterRepresentation", value));
            int code = -1;
            EXPECT_TRUE(value.get(code));
            EXPECT_EQ(code, 1);
            continue;
        }
        const std::set<std::wstring> names = useDescriptors(module->schema());
        if (round == 0) first = names;
        EXPECT_EQ(names, first);
    }
    EXPECT_GT(first.size(), 164u + 16 + 16 + 2 * 16);
}

/// The same where the library itself stays in the process, so that what it forgot would still be found in its memory.
TEST(ModuleValues, DescriptorsGoWhereTheLibraryStays) {
    void* const library = ::dlopen(KP_MODULE_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_TRUE(library) << ::dlerror();
    const auto app = reinterpret_cast<KpIfcModuleLifeCycle* (*)()>(::dlsym(library, "kpGetModuleLifeCycleApp"));
    const auto schema = reinterpret_cast<KpIfcSchema* (*)()>(::dlsym(library, "kpifcGetSchemaPointer"));
    ASSERT_TRUE(app && schema);
    std::set<std::wstring> first;
    for (int round = 0; round < 10; ++round) {
        ASSERT_TRUE(app()->initialise());
        const std::set<std::wstring> names = useDescriptors(*schema());
        if (round == 0) first = names;
        EXPECT_EQ(names, first);
        app()->unload();
        app()->unload();
    }
    ::dlclose(library);
}

} // namespace
