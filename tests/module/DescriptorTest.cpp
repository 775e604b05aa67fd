#include "Environment.h"
#include "SelectClasses.h"

#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcVariantTypes.h>
#include <KpRx/KcString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <map>
#include <set>
#include <thread>

using namespace KP_SDAI;
using namespace IFC2X3;

namespace {

/// The slots of all descriptors of the module by what they describe.
using Slots = std::map<std::string, std::vector<KpIfcDescriptorSlot*>>;

const KpIfcSchema& schemaOf(const KpIfcFile& file) {
    return file.model()->schema();
}

template <class S>
void appendSelect(Slots& slots) {
    slots["select"].push_back(&S::g_descriptors.value);
    slots["pointer"].push_back(&S::g_descriptors.pointer);
    if constexpr (requires { S::g_descriptors.array; }) {
        slots["array"].push_back(&S::g_descriptors.array);
    }
    if constexpr (requires { S::g_descriptors.set; }) {
        slots["set"].push_back(&S::g_descriptors.set);
    }
    if constexpr (requires { S::g_descriptors.list; }) {
        slots["list"].push_back(&S::g_descriptors.list);
    }
}

Slots allSlots(const KpIfcSchema& schema) {
    Slots slots;
    for (const Dictionary::Entry& entry : schema.types().entries()) {
        if (const KpIfcEnumerationType* type = schema.findType(entry.name)->enumeration()) {
            slots["enumeration"].push_back(type->facts()->descriptor);
        }
    }
    [&]<class... Select>(ClassList<Select...>) { (appendSelect<Select>(slots), ...); }(SelectClasses{});
    return slots;
}

using Names = std::set<std::wstring>;

std::wstring wide(const std::string& text) {
    return {text.begin(), text.end()};
}

/// The names that the dictionary's types give the descriptors, whatever classes there are.
std::map<std::string, Names> expectedNames(const KpIfcSchema& schema) {
    std::map<std::string, Names> names;
    for (const Dictionary::Entry& entry : schema.types().entries()) {
        const KpIfcDefinedType& type = *schema.findType(entry.name);
        const std::wstring name = L"IFC2X3::" + wide(type.displayName());
        if (type.enumeration()) {
            names["enumeration"].insert(name);
        } else if (type.select()) {
            names["select"].insert(name);
            names["pointer"].insert(name + L"*");
        }
    }
    for (const KpIfcEntityType* type : entityTypes(schema)) {
        for (const auto& attribute : type->attributes()) {
            const auto* explicitOne = attribute->as<KpIfcExplicitAttributeDefinition>();
            const KpIfcAttributeFacts* row = explicitOne ? explicitOne->facts() : nullptr;
            if (!row || !row->aggregate || row->aggregate->element != KpIfcElementKind::select) {
                continue;
            }
            const std::string declared = attribute->typeText(); // "LIST [1:?] OF IfcValue"
            const std::wstring select = L"IFC2X3::" + wide(declared.substr(declared.rfind(' ') + 1));
            names["array"].insert(L"SDAI_NAMESPACE_PFX KpIfcArray<" + select + L">");
            if (row->aggregate->isSet) {
                names["set"].insert(L"::KP_SDAI:: KpIfcSetAggr<" + select + L">*");
            } else {
                names["list"].insert(L"::KP_SDAI:: KpIfcListAggr<" + select + L">*");
            }
        }
    }
    return names;
}

TEST(Descriptor, NamesOfAll288) {
    const KpIfcFile file = emptyFile();
    std::map<std::string, Names> names;
    std::map<std::string, std::size_t> counts;
    std::set<const KpIfcVariantType*> objects;
    for (const auto& [kind, slots] : allSlots(schemaOf(file))) {
        counts[kind] = slots.size();
        for (KpIfcDescriptorSlot* slot : slots) {
            names[kind].insert(slot->value().displayName());
            objects.insert(&slot->value());
        }
    }
    EXPECT_EQ(names, expectedNames(schemaOf(file)));
    EXPECT_EQ(counts,
              (std::map<std::string, std::size_t>{
                  {"enumeration", 164}, {"select", 46}, {"pointer", 46}, {"array", 16}, {"set", 13}, {"list", 3}}));
    EXPECT_EQ(objects.size(), 288u);
    const auto name = [](const KpIfcVariantType& type) { return std::wstring_view(type.displayName()); };
    EXPECT_EQ(name(KpIfcVariantType::Desc<IfcRoleEnum>::value()), L"IFC2X3::IfcRoleEnum");
    EXPECT_EQ(name(KpIfcVariantType::Desc<KpIfcArray<IfcShell>>::value()),
              L"SDAI_NAMESPACE_PFX KpIfcArray<IFC2X3::IfcShell>");
    EXPECT_EQ(name(KpIfcVariantType::Desc<KpIfcListAggr<IfcValue>*>::value()),
              L"::KP_SDAI:: KpIfcListAggr<IFC2X3::IfcValue>*");
}

/// After a release the next one who asks makes a new object; many may ask at once.
TEST(Descriptor, OneObjectOfEachForAllThreads) {
    constexpr int kThreads = 16;
    const KpIfcFile file = emptyFile();
    std::vector<KpIfcDescriptorSlot*> slots;
    for (const auto& [kind, some] : allSlots(schemaOf(file))) {
        slots.insert(slots.end(), some.begin(), some.end());
    }
    for (int round = 0; round < 20; ++round) {
        for (KpIfcDescriptorSlot* slot : slots) {
            slot->release();
            slot->release(); // nothing to do
        }
        std::vector<std::vector<const KpIfcVariantType*>> seen(kThreads);
        std::barrier start(kThreads);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                start.arrive_and_wait();
                for (std::size_t k = 0; k < slots.size(); ++k) {
                    const std::size_t place = i % 2 ? slots.size() - 1 - k : k;
                    const KpIfcVariantType& type = slots[place]->value();
                    // What is seen is complete: its class answers, not its base.
                    const bool isWhole =
                        type.enumeration() || type.isSelect() || type.isAggregate() || type.objectMemAllocator();
                    seen[i].push_back(isWhole ? &type : nullptr);
                }
                if (i % 2) {
                    std::reverse(seen[i].begin(), seen[i].end());
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        for (const auto& types : seen) {
            ASSERT_EQ(types, seen[0]);
        }
        ASSERT_EQ(std::set(seen[0].begin(), seen[0].end()).size(), 288u);
        ASSERT_FALSE(std::set(seen[0].begin(), seen[0].end()).contains(nullptr));
    }
}

#if defined(__SANITIZE_ADDRESS__) // freed memory is not used again at once
TEST(Descriptor, IsAnotherObjectAfterRelease) {
    const KpIfcFile file = emptyFile();
    for (const auto& [kind, slots] : allSlots(schemaOf(file))) {
        for (KpIfcDescriptorSlot* slot : slots) {
            const KpIfcVariantType* const former = &slot->value();
            slot->release();
            EXPECT_NE(&slot->value(), former) << kind;
        }
    }
}
#endif

TEST(Descriptor, OfEnumerations) {
    const KpIfcFile file = emptyFile();
    std::size_t constants = 0;
    for (const Dictionary::Entry& entry : schemaOf(file).types().entries()) {
        const KpIfcDefinedType& type = *schemaOf(file).findType(entry.name);
        if (!type.enumeration()) {
            continue;
        }
        SCOPED_TRACE(type.displayName());
        const std::string prefix = std::string("IFC2X3::k") + type.displayName() + '_';
        const KpIfcEnumFacts& facts = *type.enumeration()->facts();
        const auto* descriptor = dynamic_cast<KpIfcEnumVariantType*>(&facts.descriptor->value());
        ASSERT_TRUE(descriptor);
        std::vector<std::string> expected, names;
        for (const KpAnsiString& literal : type.enumeration()->literals()) {
            expected.push_back(prefix + literal.constStr());
        }
        expected.push_back(prefix + "UNSET");
        for (const KpAnsiString& name : descriptor->constantNames()) {
            names.push_back(name.constStr());
        }
        EXPECT_EQ(names, expected);
        constants += names.size();
        EXPECT_EQ(descriptor->enumeration(), &facts);
        EXPECT_FALSE(descriptor->isSelect() || descriptor->isAggregate());
        EXPECT_EQ(descriptor->size(), 4u);
        KpIfcVariant value;
        ASSERT_TRUE(descriptor->createVariant(value));
        int code = -1;
        EXPECT_TRUE(value.get(code));
        EXPECT_EQ(code, facts.count);
    }
    EXPECT_EQ(constants, 1474u);
}

TEST(Descriptor, ConversionsOfEnumerations) {
    const struct {
        KpIfcVariant value;
        const char* text; ///< also of the description, where there is one; null for none
        bool described;
        int code;
    } cases[] = {
        {kIfcRoleEnum_SUPPLIER, "SUPPLIER", true, 0},
        {kIfcRoleEnum_USERDEFINED, "USERDEFINED", true, 22},
        {kIfcRoleEnum_UNSET, nullptr, false, 23},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        const auto textAs = [&](const KpIfcVariantType& target) {
            KpIfcVariant scratch;
            const KpIfcVariant* converted = c.value.convert(target, scratch);
            const char* const* text = converted ? converted->getIf<const char*>() : nullptr;
            return !text ? "refused" : *text ? *text : "null";
        };
        const std::string expected = c.text ? c.text : "null";
        EXPECT_EQ(textAs(KpIfcVariantType::Desc<const char*>::value()), expected);
        EXPECT_EQ(textAs(KpIfcVariantType::Desc<KpAnsiString>::value()), expected);
        EXPECT_EQ(textAs(KpIfcVariantType::Desc<KpIfcEnumDescription>::value()), c.described ? expected : "refused");
        KpAnsiString string("before");
        EXPECT_TRUE(c.value.get(string));
        EXPECT_EQ(string.isUnset(), !c.text);
        int code = -1;
        unsigned long unsignedCode = 99;
        EXPECT_TRUE(c.value.get(code) && c.value.get(unsignedCode));
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(unsignedCode, static_cast<unsigned long>(c.code));
        double real = 0;
        IfcRoofTypeEnum other = kIfcRoofTypeEnum_FLAT_ROOF;
        EXPECT_FALSE(c.value.get(real) || c.value.get(other));
        for (const StringFormat format : {kFormatPlain, kFormatStep}) {
            KcString shown;
            EXPECT_TRUE(c.value.toString(shown, format));
            EXPECT_STREQ(shown.utf8Ptr(), c.text ? c.text : "");
        }
        EXPECT_TRUE(c.value == KpIfcVariant(static_cast<IfcRoleEnum>(c.code)));
        EXPECT_FALSE(c.value == KpIfcVariant(static_cast<IfcRoleEnum>(c.code + 1)));
        EXPECT_FALSE(c.value == KpIfcVariant(c.code));
    }
}

} // namespace
