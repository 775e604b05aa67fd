#include "Scenario.h"

#include "StepFiles.h"

#include <IFC2X3/IfcCartesianPoint.h>
#include <IFC2X3/IfcPerson.h>
#include <IFC2X3/IfcPolyline.h>
#include <IFC2X3/IfcPropertyListValue.h>
#include <IFC2X3/IfcPropertySingleValue.h>
#include <IFC2X3/IfcRelAggregates.h>
#include <IFC2X3/IfcWall.h>
#include <KpIfcCore/KpIfcAttributeAccess.h>
#include <KpIfcCore/KpIfcChangeGroup.h>
#include <KpIfcCore/KpIfcCheck.h>
#include <KpIfcCore/KpIfcCopy.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcPropertySets.h>
#include <KpRx/KcString.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

constexpr const char* kRecords =
    "#1=IFCWALL('0000000000000000000001',$,'A wall of several words',$,$,$,$,$); /* a comment */\n"
    "#2=IFCWALL('0000000000000000000002',$,'W2',$,$,$,$,$);\n"
    "#3=IFCRELAGGREGATES('0000000000000000000003',$,$,$,#1,(#2,#30,#31));\n"
    "#4=IFCPERSON('007','D\\X\\F6e',$,('A','B and some more'),$,$,$,$);\n"
    "#5=IFCCARTESIANPOINT((0.,1.5));\n"
    "#6=IFCPROPERTYSINGLEVALUE('P',$,IFCLABEL('x'),$);\n"
    "#7=IFCPOLYLINE((#5,#5,#70));\n"
    "#8=IFCNOTHING(1,#1);\n"
    "#9=IFCWALL('0000000000000000000009',$,12,$,$,$,$,$);\n"
    "#10=IFCPROPERTYLISTVALUE('L',$,(IFCINTEGER(7),IFCLABEL('seven times'),IFCCOMPLEXNUMBER((1.,0.5))),$);\n"
    "#11=IFCRELDEFINESBYPROPERTIES('0000000000000000000011',$,$,$,(#1,#2),#12);\n"
    "#12=IFCPROPERTYSET('0000000000000000000012',$,'Pset_Of two walls',$,(#6,#10));\n"
    "#13=IFCPROPERTYSINGLEVALUE('C',$,IFCCOMPLEXNUMBER((1.,2.)),$);\n"
    "#14=IFCCARTESIANPOINT((1.,2.));\n"
    "#14=IFCCARTESIANPOINT((3.,4.));\n"
    "#15=IFCPOLYLINE((#5,#999));\n"
    "#16=(IFCNAMEDUNIT(*,.LENGTHUNIT.)IFCSIUNIT($,.METRE.));\n"
    "#17=IFCPRESENTATIONSTYLEASSIGNMENT((IFCNULLSTYLE(.NULL.),#18));\n"
    "#18=IFCCURVESTYLE('thin',$,$,$);\n"
    "#30=IFCWALL('0000000000000000000030',$,$,$,$,$,$,$);\n"
    "#31=IFCWALL('0000000000000000000031',$,$,$,$,$,$,$);\n"
    "#70=IFCCARTESIANPOINT((1.,2.,3.));\n";
constexpr const char* kFarRecords = "#20000=IFCCARTESIANPOINT((5.,6.));\n"
                                    "#60000=IFCCARTESIANPOINT((7.,8.));\n";

constexpr const char* kOtherRecords = "#1=IFCWALL('0000000000000000000041',$,'of another',$,$,$,$,$);\n"
                                      "#7=IFCNOTHING(#1);\n#80=IFCPROPERTYLISTVALUE('L',$,(IFCLABEL('a')),$);\n"
                                      "#81=IFCRELAGGREGATES('0000000000000000000042',$,7,$,#1,(#1));\n";

template <class T>
T& at(KpIfcModel& model, std::uint64_t name) {
    T* const instance = as<T>(model.find(name));
    if (!instance) throw std::logic_error("no instance #" + std::to_string(name));
    return *instance;
}

void put(KpIfcModel& model, std::uint64_t name, const char* attribute, const KpIfcVariant& value) {
    EXPECT_TRUE(model.find(name).openObject()->putAttr(attribute, value)) << "#" << name << "." << attribute;
}

void eraseAll(KpIfcModel& model, std::vector<std::uint64_t> names, KpIfcErasePolicy policy) {
    std::vector<KpDbObjectId> handles;
    for (const std::uint64_t name : names)
        if (!model.find(name).isNull()) handles.push_back(model.find(name)); // may not have been made
    EXPECT_EQ(erase(model, handles, policy).status, KP::eOk);
}

} // namespace

std::string richFile(std::string_view more) {
    return stepFile(std::string(kRecords) + std::string(more) + kFarRecords);
}

const std::vector<Edit>& edits() {
    static const std::vector<Edit> all = {
        {"Texts",
         [](KpIfcModel& model) {
             at<IfcWall>(model, 1).setName("another name, longer than what was there before");
             put(model, 2, "Description", KcString("M\xC3\xBChle", KcString::Encoding::utf8));
             put(model, 9, "Name", "not a number");
             at<IfcPerson>(model, 4).getMiddleNames().append("a third one");
         }},
        {"Numbers",
         [](KpIfcModel& model) {
             at<IfcCartesianPoint>(model, 70).getCoordinates().at(2) = 42;
             for (int i = 0; i < 20; ++i) at<IfcCartesianPoint>(model, 60000).getCoordinates().append(i);
             put(model, 5, "Coordinates", KpIfcArray<double>{9, 8, 7});
         }},
        {"References",
         [](KpIfcModel& model) {
             at<IfcRelAggregates>(model, 3).getRelatedObjects().add(model.find(9));
             at<IfcRelAggregates>(model, 3).getRelatedObjects().remove(model.find(2));
             put(model, 7, "Points", KpIfcArray<KpDbObjectId>{model.find(70), model.find(5)});
             put(model, 11, "RelatedObjects", KpIfcArray<KpDbObjectId>{model.find(30), model.find(1)});
         }},
        {"Selects",
         [](KpIfcModel& model) {
             IfcValue value;
             value.underlyingTypeName("IfcText");
             value.putValue("a text that a select holds");
             at<IfcPropertySingleValue>(model, 6).setNominalValue(value);
             at<IfcPropertyListValue>(model, 10).getListValues().append(value);
         }},
        {"Unset", [](KpIfcModel& model) { model.find(4).openObject()->unsetAttr("MiddleNames"); }},
        {"Forget", [](KpIfcModel& model) { model.forgetSource(*model.find(15).openObject(), 0); }},
        {"Create",
         [](KpIfcModel& model) {
             IfcPolyline& line = *model.create<IfcPolyline>();
             for (int i = 0; i < 3; ++i) {
                 KpIfcEntityBase* const point = model.create("IfcCartesianPoint");
                 point->putAttr("Coordinates", KpIfcArray<double>{1.0 * i, 2});
                 line.getPoints().append(point->objectId());
             }
             model.create("IfcWall", 25)->putAttr("GlobalId", "0000000000000000000025");
             model.create("IfcPerson", 3'000'000'000)->putAttr("FamilyName", "Far away");
         }},
        {"Property",
         [](KpIfcModel& model) {
             std::string error;
             for (const char* set : {"Pset_Of two walls", "Of its own"}) {
                 const KP::ErrorStatus status = setProperty(at<IfcWall>(model, 1), set, "New", "IfcLabel", "v", error);
                 EXPECT_EQ(status, KP::eOk) << error;
             }
             // GlobalIds that were made are random.
             int number = 0;
             for (KpIfcEntityBase* instance : model.instances("IfcRoot"))
                 if (instance->instanceName() > 60000)
                     instance->putAttr("GlobalId", ("00000000000000000001" + std::to_string(10 + number++)).c_str());
         }},
        {"Copy",
         [](KpIfcModel& model) {
             const std::string content = stepFile(kOtherRecords);
             KpIfcFile other;
             if (other.openMemory(content.data(), content.size()) != KP::eOk) throw std::bad_alloc();
             KpIfcCopier copier(*other.model(), model);
             KpIfcArray<KpDbObjectId> wanted;
             for (const int name : {81, 7, 80}) wanted.append(other.model()->find(static_cast<std::uint64_t>(name)));
             EXPECT_EQ(copier.copy(wanted), KP::eOk);
         }},
        {"Erase", [](KpIfcModel& model) { eraseAll(model, {12}, KpIfcErasePolicy::cascade); }},
        {"EraseKept",
         [](KpIfcModel& model) {
             eraseAll(model, {8, 30, 25}, KpIfcErasePolicy::dropReferences);
         }},
        {"RollBack",
         [](KpIfcModel& model) {
             KpIfcChangeGroup group(model);
             at<IfcWall>(model, 1).setName("for a moment");
             model.create("IfcWall", 26);
             eraseAll(model, {1, 14, 16}, KpIfcErasePolicy::dropReferences);
         },
         true},
        {"Check", [](KpIfcModel& model) { checkModel(model); }},
    };
    return all;
}

std::string referrersText(const KpIfcModel& model) {
    std::string text;
    const auto add = [&](const KpIfcArray<KpDbObjectId>& handles) {
        for (const KpDbObjectId& handle : handles) text += ' ' + std::to_string(handle.instanceName());
    };
    for (const KpIfcEntityBase* instance : model.instances()) {
        text += '#' + std::to_string(instance->instanceName()) + ':';
        add(model.referrers(instance->objectId()));
        for (const KpIfcAttributeDefinition* attribute : instance->getInstanceType()->allAttributes()) {
            KpIfcArray<KpDbObjectId> referrers;
            if (attribute->kind() != KpIfcAttributeKind::inverseAttribute) continue;
            peekInverse(*instance, attribute->name(), referrers);
            if (!referrers.empty()) text += std::string(" ") + attribute->name();
            add(referrers);
        }
        text += '\n';
    }
    for (const char* globalId : {"0000000000000000000001", "0000000000000000000025", "0000000000000000000041"})
        add(model.findAllByGlobalId(globalId));
    return text;
}
