#include "Models.h"

#include "Harness.h"

#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcCheck.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcPropertySets.h>
#include <KpIfcCore/KpIfcReferences.h>

#include <map>
#include <memory>
#include <set>
#include <vector>

using namespace KP_SDAI;

void keepModule() {
    static std::string error;
    static const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
    require(module != nullptr, error);
}

std::string framed(std::string_view records) {
    return "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\nFILE_NAME('','',(''),(''),'','','');\n"
           "FILE_SCHEMA(('IFC2X3'));\nENDSEC;\nDATA;\n" +
           std::string(records) + "\nENDSEC;\nEND-ISO-10303-21;\n";
}

std::string written(KpIfcFile& file, bool normalised) {
    std::string out;
    const bool isDone = file.saveToMemory(out, {.normalise = normalised}) == KP::eOk;
    require(isDone, "a model can be written: " + file.error());
    return out;
}

std::string writtenRecords(KpIfcFile& file) {
    const std::string all = written(file, true);
    const std::size_t begin = all.find("\nDATA;\n");
    require(begin != std::string::npos, "there is a data section");
    return all.substr(begin);
}

KpIfcFile reopened(const std::string& content) {
    KpIfcFile file;
    const bool isRead = file.openMemory(content.data(), content.size()) == KP::eOk;
    require(isRead, "what was written can be read: " + file.error());
    return file;
}

void requireTrueIndexes(const KpIfcModel& model) {
    std::map<KpDbObjectId, std::set<KpDbObjectId>> referrers;
    std::size_t count = 0;
    for (KpIfcEntityBase* instance : model.instances()) {
        ++count;
        for (const KpIfcAttributeFacts* row : instance->getInstanceType()->recordFields()) {
            visitReferences(*instance, *row, [&](const KpDbObjectId& handle) {
                if (!handle.isNull()) {
                    require(handle.isDefined(), "no instance refers to what is not there");
                    referrers[handle].insert(instance->objectId());
                }
            });
        }
    }
    require(model.count() == count, "the count is that of the instances");
    std::set<KpDbObjectId> inOrder;
    for (const KpDbObjectId& handle : model.fileOrder()) {
        require(handle.isDefined() && inOrder.insert(handle).second, "the order holds each instance once");
    }
    require(inOrder.size() >= count, "the order holds all instances");
    for (KpIfcEntityBase* instance : model.instances()) {
        const KpDbObjectId handle = instance->objectId();
        const std::set<KpDbObjectId>& expected = referrers[handle];
        const KpIfcArray<KpDbObjectId> found = model.referrers(handle);
        require(std::set<KpDbObjectId>(found.begin(), found.end()) == expected && found.length() == expected.size(),
                "referrers are those that refer");
        for (const KpIfcAttributeDefinition* attribute : instance->getInstanceType()->allAttributes()) {
            KpIfcArray<KpDbObjectId> held;
            if (attribute->kind() == KpIfcAttributeKind::inverseAttribute &&
                peekInverse(*instance, attribute->name(), held)) {
                for (const KpDbObjectId& each : held) {
                    require(expected.count(each) == 1, "#" + std::to_string(handle.instanceName()) + "." +
                                                           attribute->name() + " holds those that refer, not #" +
                                                           std::to_string(each.instanceName()));
                }
            }
        }
    }
}

void requireRoundTrip(std::string_view content) {
    keepModule();
    KpIfcFile file;
    if (file.openMemory(content.data(), content.size()) != KP::eOk) {
        require(!file.error().empty() && !file.model(), "what is refused has a reason and no model");
        return;
    }
    checkFile(file);
    requireTrueIndexes(*file.model());
    for (KpIfcEntityBase* instance : file.model()->instances("IfcObjectDefinition")) {
        propertiesOf(*instance);
    }
    requireSame(written(file, false), content, "what nobody changed stays");
    for (KpIfcEntityBase* instance : file.model()->instances()) {
        KpIfcChange::before(*instance);
    }
    requireSame(written(file, false), content, "what is as it was stays");

    const std::string normalised = written(file, true);
    KpIfcFile again = reopened(normalised);
    const std::size_t kept = file.model()->keptRecordCount();
    const std::size_t keptAgain = again.model()->keptRecordCount();
    require(again.model()->count() + keptAgain == file.model()->count() + kept, "all records come back");
    require(keptAgain == kept, "as much is kept as text");
    const std::string twice = written(again, true);
    if (file.report().isTruncated()) { // what was lost comes once, in a comment
        again = reopened(twice);
        requireSame(written(again, true), twice, "it is written alike from the second time on");
    } else {
        requireSame(twice, normalised, "it is written alike again");
    }
}
