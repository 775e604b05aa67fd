#include "SchemaFile.h"

#include <array>
#include <cctype>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace schema_file {

namespace {

bool isName(std::string_view word) {
    return !word.empty() && std::isupper(static_cast<unsigned char>(word.front()));
}

std::string trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return std::string(text);
}

/// Takes `word` and the blank behind it from the front of the text where it begins with them.
bool take(std::string& text, std::string_view word) {
    if (text.rfind(std::string(word) + ' ', 0) != 0) return false;
    text.erase(0, word.size() + 1);
    return true;
}

/// What stands before the separator, which is removed with it.
std::string takeUntil(std::string& text, std::string_view separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string::npos)
        throw std::runtime_error("schema file: no '" + std::string(separator) + "' in " + text);
    const std::string head = trimmed(text.substr(0, at));
    text = trimmed(text.substr(at + separator.size()));
    return head;
}

void readMember(std::string line, Entity& entity) {
    if (take(line, "unique")) {
        UniqueRule rule{takeUntil(line, ":"), ""};
        for (const char c : line)
            if (c != ',') rule.attributes += c;
        entity.uniqueRules.push_back(rule);
        return;
    }
    Attribute attribute{Attribute::Kind::explicitAttribute, "", "", false, "", ""};
    if (take(line, "derive")) attribute.kind = Attribute::Kind::derived;
    if (take(line, "inverse")) attribute.kind = Attribute::Kind::inverse;
    attribute.name = takeUntil(line, ": ");
    if (const std::size_t dot = attribute.name.find('.'); dot != std::string::npos) {
        attribute.redeclaredIn = attribute.name.substr(0, dot);
        attribute.name.erase(0, dot + 1);
    }
    attribute.optional = take(line, "optional");
    if (attribute.kind == Attribute::Kind::inverse) {
        const std::string type = takeUntil(line, " for ");
        attribute.inverted = line;
        line = type;
    }
    attribute.type = expressNotation(line);
    entity.attributes.push_back(attribute);
}

void readDeclaration(std::string line, Schema& schema) {
    const bool isAbstract = take(line, "abstract");
    if (take(line, "entity")) {
        Entity entity;
        entity.isAbstract = isAbstract;
        if (line.find(':') != std::string::npos) {
            entity.name = takeUntil(line, ":");
            entity.supertype = line;
        } else {
            entity.name = trimmed(line);
        }
        schema.entities.push_back(entity);
    } else if (take(line, "type")) {
        const std::string name = takeUntil(line, "=");
        schema.types.push_back({Type::Kind::defined, name, expressNotation(line), {}});
    } else if (take(line, "enum")) {
        schema.types.push_back({Type::Kind::enumeration, trimmed(line), "", {}});
    } else if (take(line, "select")) {
        schema.types.push_back({Type::Kind::select, trimmed(line), "", {}});
    } else if (!take(line, "schema")) {
        throw std::runtime_error("schema file: " + line);
    }
}

} // namespace

std::string expressNotation(std::string_view type) {
    std::istringstream words{std::string(type)};
    std::string text, word;
    while (words >> word) {
        if (!isName(word))
            for (char& c : word) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

Schema readIfc2x3() {
    std::ifstream file(KP_SOURCE_DIR "/generator/schemas/ifc2x3.schema");
    if (!file) throw std::runtime_error("schema file: cannot be read");
    Schema schema;
    bool isEntity = false;
    for (std::string line; std::getline(file, line);) {
        line.erase(std::min(line.find('#'), line.size()));
        if (trimmed(line).empty()) continue;
        if (line.front() != ' ') {
            readDeclaration(line, schema);
            isEntity = line.find("entity ") != std::string::npos;
        } else if (isEntity) {
            readMember(trimmed(line), schema.entities.back());
        } else {
            std::istringstream words(line);
            for (std::string word; words >> word;) schema.types.back().words.push_back(word);
        }
    }
    return schema;
}

} // namespace schema_file
