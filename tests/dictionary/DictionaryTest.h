#pragma once

#include "SchemaFile.h"

#include <KpIfcCore/KpIfcAggregationType.h>
#include <KpIfcCore/KpIfcEnumerationType.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSelectType.h>

#include <gmock/gmock.h>

/// Cases that look at the dictionary of the loaded module.
class DictionaryTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        std::string error;
        s_module = KP_SDAI::KpIfcModule::loadFile(KP_MODULE_FILE, error);
        ASSERT_NE(s_module, nullptr) << error;
    }
    static void TearDownTestSuite() { s_module.reset(); }

    static const KP_SDAI::KpIfcSchema& schema() { return s_module->schema(); }
    static const schema_file::Schema& file() {
        static const schema_file::Schema read = schema_file::readIfc2x3();
        return read;
    }

    static const KP_SDAI::KpIfcEntityType& entity(const std::string& name) {
        const KP_SDAI::KpIfcEntityType* found = schema().findEntity(name);
        if (!found) throw std::runtime_error("no entity " + name);
        return *found;
    }
    static const KP_SDAI::KpIfcDefinedType& type(const std::string& name) {
        const KP_SDAI::KpIfcDefinedType* found = schema().findType(name);
        if (!found) throw std::runtime_error("no type " + name);
        return *found;
    }
    /// The attribute that the entity itself declares.
    template <class Definition>
    static const Definition& attribute(const std::string& entityName, const std::string& name) {
        for (const auto& own : entity(entityName).attributes())
            if (const auto* found = own->template as<Definition>(); found && own->name() == name) return *found;
        throw std::runtime_error("no attribute " + entityName + '.' + name);
    }

    /// All objects of a dictionary, of which it is known what they are.
    template <class T>
    static std::vector<const T*> all(const Dictionary& dictionary) {
        std::vector<const T*> objects;
        for (const Dictionary::Entry& entry : dictionary.entries())
            objects.push_back(&dynamic_cast<const T&>(*entry.object));
        return objects;
    }

private:
    inline static std::shared_ptr<KP_SDAI::KpIfcModule> s_module;
};

/// "IfcRoot.Name" for each.
inline std::vector<std::string> namesOf(const std::vector<const KP_SDAI::KpIfcAttributeDefinition*>& attributes) {
    std::vector<std::string> names;
    for (const auto* attribute : attributes)
        names.push_back(std::string(attribute->owner()->displayName()) + '.' + attribute->displayName());
    return names;
}

template <class Type>
std::vector<std::string> namesOf(const std::vector<const Type*>& types) {
    std::vector<std::string> names;
    for (const Type* type : types) names.push_back(type->displayName());
    return names;
}
