#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcSchema.h>

#include <memory>
#include <string>
#include <vector>

namespace KP_SDAI {

/// The life of a schema module, as the runtime drives it. A module exports `kpGetModuleLifeCycleApp`, which returns its
/// one object of this class. Neither operation may run while classes of the module are in use.
class KPIFCCORE_EXPORT KpIfcModuleLifeCycle {
public:
    virtual ~KpIfcModuleLifeCycle();
    /// Builds the schema once; true also where it stands already.
    virtual bool initialise() = 0;
    /// Frees the schema and every cached descriptor.
    virtual void unload() = 0;
};

/// A loaded schema module. Everybody who needs it keeps a shared pointer; the last one to let go unloads it. Any thread
/// may load or let go at any time, also while others do.
class KPIFCCORE_EXPORT KpIfcModule {
public:
    KpIfcModule(const KpIfcModule&) = delete;
    KpIfcModule& operator=(const KpIfcModule&) = delete;
    ~KpIfcModule();

    const KpIfcSchema& schema() const { return *m_schema; }
    const std::string& path() const { return m_path; }

    /// The module of a schema by its name as files write it: any letter case, an object identifier behind it, and the
    /// spellings of corrigenda ("IFC2X3_TC1", "IFC2X3_FINAL"). It is looked for in the folders of the environment
    /// variable KPIFC_MODULE_PATH, then beside the runtime library. Null with a text in `error` where it is not found
    /// or cannot be loaded; std::bad_alloc where memory runs out, and then it can be loaded later.
    static std::shared_ptr<KpIfcModule> load(const std::string& schemaName, std::string& error);
    /// The module at a given path.
    static std::shared_ptr<KpIfcModule> loadFile(const std::string& path, std::string& error);
    /// Names of the schemas whose modules can be found, sorted.
    static std::vector<std::string> available();

private:
    KpIfcModule() = default;
    std::string m_path;
    void* m_library = nullptr;
    KpIfcModuleLifeCycle* m_lifeCycle = nullptr;
    const KpIfcSchema* m_schema = nullptr;
};

} // namespace KP_SDAI
