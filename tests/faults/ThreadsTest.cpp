#include "Scenario.h"
#include "StepFiles.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcPropertyListValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcCheck.h>
#include <KpIfcCore/KpIfcCopy.h>
#include <KpIfcCore/KpIfcKeptText.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcProperty.h>
#include <KpIfcCore/KpIfcPropertySets.h>
#include <KpRx/KcString.h>

#include <gtest/gtest.h>

#include <barrier>
#include <string>
#include <thread>
#include <vector>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

constexpr std::size_t kThreads = 6;

/// Runs `work(number)` in many threads at once.
template <class Work>
void inThreads(Work work) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) threads.emplace_back([&work, i] { work(i); });
    for (std::thread& thread : threads) thread.join();
}

std::string textOf(const KpIfcVariant& value) {
    KcString text;
    value.toString(text, kFormatStep);
    return std::string(text.view()) + ' ';
}

std::string textOf(const KpIfcArray<KpDbObjectId>& handles) {
    std::string text;
    for (const KpDbObjectId& handle : handles) text += std::to_string(handle.instanceName()) + ' ';
    return text;
}

std::string workedOn() {
    KpIfcFile file = opened(richFile());
    KpIfcModel& model = *file.model();
    std::string text = referrersText(model);
    for (const Edit& edit : edits()) edit.make(model);
    text += referrersText(model);
    text += rewritten(file);
    return text + saved(file);
}

/// Every thread has models of its own; the module goes whenever none has, and comes again.
TEST(Threads, WorkOnTheirOwnModelsWhileTheModuleComesAndGoes) {
    const std::string expected = workedOn();
    inThreads([&](std::size_t thread) {
        for (int round = 0; round < 8; ++round) {
            if ((static_cast<std::size_t>(round) + thread) % 3 == 0) {
                std::string error;
                EXPECT_TRUE(KpIfcModule::load("IFC2X3", error)) << error;
                EXPECT_FALSE(KpIfcModule::available().empty());
            } else {
                EXPECT_TRUE(workedOn() == expected);
            }
        }
    });
}

/// One way to read a model; its name, and all that it says.
struct Reading {
    const char* name;
    std::string (*read)(KpIfcFile&);
};

template <class Visit>
std::string ofAll(KpIfcFile& file, Visit visit) {
    std::string text;
    for (KpIfcEntityBase* instance : file.model()->instances()) text += visit(*instance);
    return text;
}

const Reading kReadings[] = {
    {"getters, also those that hand out references",
     [](KpIfcFile& file) {
         double sum = 0;
         std::string text;
         for (IfcCartesianPoint* point : file.model()->instances<IfcCartesianPoint>())
             for (const double x : point->getCoordinates()) sum += x;
         for (IfcWall* wall : file.model()->instances<IfcWall>()) text += wall->getName().constStr();
         for (IfcRelAggregates* relation : file.model()->instances<IfcRelAggregates>())
             for (const KpDbObjectId& handle : relation->getRelatedObjects())
                 sum += static_cast<double>(handle.instanceName());
         for (IfcPropertyListValue* list : file.model()->instances<IfcPropertyListValue>())
             for (const IfcValue& value : list->getListValues()) text += value.underlyingTypeName();
         return text + std::to_string(sum);
     }},
    {"values by name",
     [](KpIfcFile& file) {
         return ofAll(file, [](KpIfcEntityBase& instance) {
             std::string text;
             for (const KpIfcAttributeFacts* row : instance.getInstanceType()->recordFields()) {
                 KpIfcVariant value;
                 if (instance.getAttr(row->name, value)) text += textOf(value);
                 text += instance.testAttr(row->name) ? "+" : "-";
                 if (peekAttribute(instance, row->name, value)) text += value.isEmpty() ? "0" : "1";
             }
             return text;
         });
     }},
    {"inverse attributes", [](KpIfcFile& file) { return referrersText(*file.model()); }},
    {"referrers",
     [](KpIfcFile& file) {
         return ofAll(file, [](KpIfcEntityBase& i) { return textOf(i.owningModel()->referrers(i.objectId())); });
     }},
    {"GlobalIds",
     [](KpIfcFile& file) {
         const KpIfcModel& model = *file.model();
         return textOf(model.findAllByGlobalId("0000000000000000000002")) +
                std::to_string(model.findByGlobalId("0000000000000000000012").instanceName()) +
                std::to_string(model.sharedGlobalIds().length());
     }},
    {"values looked for",
     [](KpIfcFile& file) {
         return textOf(file.model()->findByAttribute("IfcRoot", "Name", KpIfcVariant("W2"))) +
                textOf(file.model()->findByAttribute("IfcPerson", "MiddleNames", KpIfcVariant()));
     }},
    {"property sets",
     [](KpIfcFile& file) {
         std::string text;
         for (IfcWall* wall : file.model()->instances<IfcWall>())
             for (const KpIfcPropertyValue& value : propertiesOf(*wall)) text += value.set + value.name + ';';
         return text;
     }},
    {"the dictionary",
     [](KpIfcFile& file) {
         std::string text;
         const KpIfcSchema& schema = file.model()->schema();
         for (const Dictionary::Entry& entry : schema.entities().entries()) {
             const KpIfcEntityType& type = *schema.findEntity(entry.name);
             text += type.displayName() + std::to_string(type.allAttributes().size());
         }
         return text;
     }},
    {"attributes as properties",
     [](KpIfcFile& file) {
         return ofAll(file, [](KpIfcEntityBase& instance) {
             std::string text;
             for (const KpIfcProperty* property : instance.getInstanceType()->allProperties()) {
                 KpIfcVariant value;
                 KpIfcArray<KpDbObjectId> members;
                 if (property->getAttribute(&instance, value) == KP::eOk) text += textOf(value);
                 if (property->getCollection(&instance, members) == KP::eOk) text += textOf(members);
             }
             return text;
         });
     }},
    {"report and kept texts",
     [](KpIfcFile& file) {
         std::string text = findings(file.report()) + file.header().text("FILE_NAME", 0);
         for (const std::string_view record : keptRecords(*file.model())) text += record;
         text += textOf(file.model()->fileOrder());
         return text + ofAll(file, [](KpIfcEntityBase& instance) {
                    std::string sources;
                    for (const KpIfcKeptField& field : keptFields(instance)) sources += field.source;
                    return sources;
                });
     }},
    {"what is wrong", [](KpIfcFile& file) { return findings(checkModel(*file.model())); }},
    {"copies for other models",
     [](KpIfcFile& file) {
         KpIfcFile part;
         EXPECT_EQ(part.create("IFC2X3"), KP::eOk) << part.error();
         KpIfcCopier copier(*file.model(), *part.model());
         EXPECT_EQ(copier.copy(file.model()->find(11)), KP::eOk);
         std::string text;
         visitAllReferences(file.model()->find(8), [&](const KpIfcReference& reference) {
             text += std::to_string(reference.to.instanceName());
         });
         return text + saved(part).substr(300);
     }},
};

/// A model at rest is read by many at once, by each of them for the first time: what is made when first asked for, of
/// the model and of the module, all ask for at the same moment.
TEST(Threads, ReadOneModelInEveryWay) {
    for (const Reading& first : kReadings) {
        SCOPED_TRACE(first.name);
        std::vector<std::string> expected;
        {
            KpIfcFile file = opened(richFile());
            file.model()->mode(kReadOnly);
            for (const Reading& reading : kReadings) expected.push_back(reading.read(file));
        }
        KpIfcFile file = opened(richFile());
        file.model()->mode(kReadOnly);
        std::barrier together(kThreads);
        inThreads([&](std::size_t) {
            const auto begin = static_cast<std::size_t>(&first - kReadings);
            for (std::size_t i = 0; i < std::size(kReadings); ++i) {
                const std::size_t at = (begin + i) % std::size(kReadings);
                together.arrive_and_wait();
                EXPECT_TRUE(kReadings[at].read(file) == expected[at]) << kReadings[at].name;
            }
        });
        EXPECT_FALSE(file.model()->hasUncommitted());
        EXPECT_EQ(rewritten(file), richFile());
    }
}

/// Changes become visible to others by handing over; indexes that stand have followed them.
TEST(Threads, ReadAModelThatWasChangedAndCommitted) {
    KpIfcFile file = opened(richFile());
    KpIfcModel& model = *file.model();
    referrersText(model);
    for (const Edit& edit : edits()) edit.make(model);
    model.commit();
    const std::string expected = referrersText(*opened(rewritten(file)).model());
    inThreads([&](std::size_t) { EXPECT_EQ(referrersText(model), expected); });
}

/// One thread saves what others read.
TEST(Threads, SaveWhileOthersRead) {
    KpIfcFile file = opened(richFile());
    KpIfcModel& model = *file.model();
    for (const Edit& edit : edits()) edit.make(model);
    model.commit();
    model.mode(kReadOnly);
    const std::string whole = rewritten(file);
    const std::string normalised = saved(file);
    const std::string values = kReadings[1].read(file);
    std::barrier together(kThreads);
    inThreads([&](std::size_t thread) {
        together.arrive_and_wait();
        for (int round = 0; round < 20; ++round) {
            if (thread == 0) {
                EXPECT_EQ(rewritten(file), whole);
                EXPECT_EQ(saved(file), normalised);
            } else {
                EXPECT_TRUE(kReadings[1].read(file) == values);
                EXPECT_FALSE(referrersText(model).empty());
            }
        }
    });
}

} // namespace
