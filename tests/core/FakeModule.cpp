#include <KpIfcCore/KpIfcModule.h>

#include <stdexcept>

namespace {

class FakeLifeCycle : public KP_SDAI::KpIfcModuleLifeCycle {
public:
    bool initialise() override {
#ifdef KP_FAULT_THROWING
        throw std::runtime_error("cannot be built");
#else
        return true;
#endif
    }
    void unload() override {}
};

} // namespace

extern "C" KPIFCCORE_EXPORT KP_SDAI::KpIfcModuleLifeCycle* kpGetModuleLifeCycleApp() {
    static FakeLifeCycle lifeCycle;
    return &lifeCycle;
}

extern "C" KPIFCCORE_EXPORT KP_SDAI::KpIfcSchema* kpifcGetSchemaPointer() {
    return nullptr;
}
