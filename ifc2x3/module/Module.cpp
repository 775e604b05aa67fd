#include "schema/KpIFC2X3SchemaBuilder.h"
#include "types/Descriptors.h"

#include <IFC2X3/Types.h>
#include <KpIfcCore/KpIfcModule.h>

#include <memory>

using namespace KP_SDAI;

namespace {

/// The module's schema; null before initialise and after unload.
KpIfcSchema* g_schema = nullptr;

class Schema : public KpIfcSchema {};

void release(std::span<KpIfcDescriptorSlot* const> descriptors) {
    for (KpIfcDescriptorSlot* descriptor : descriptors) descriptor->release();
}

class KpIfcModuleLifeCycleApp : public KpIfcModuleLifeCycle {
public:
    bool initialise() override {
        if (g_schema) return true;
        auto schema = std::make_unique<Schema>();
        KpIFC2X3SchemaBuilder builder(schema.get(), KpAnsiString("IFC2X3"));
        builder.build();
        g_schema = schema.release();
        return true;
    }
    void unload() override {
        delete g_schema;
        g_schema = nullptr;
        release(IFC2X3::selectDescriptors);
        release(IFC2X3::aggregateDescriptors);
        release(IFC2X3::enumerationDescriptors);
    }
};

KpIfcModuleLifeCycleApp g_lifeCycle;

} // namespace

extern "C" KPIFC2X3_EXPORT KpIfcModuleLifeCycle* kpGetModuleLifeCycleApp() {
    return &g_lifeCycle;
}

extern "C" KPIFC2X3_EXPORT KpIfcSchema* kpifcGetSchemaPointer() {
    return g_schema;
}
