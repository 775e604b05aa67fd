#include "Harness.h"
#include "Models.h"

#include <KpIfcCore/KpIfcAttributeDefinition.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcModule.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace KP_SDAI;

/// Changes STEP text by its tokens, and adds records of any entity of the schema, so that inputs reach what stands
/// behind the grammar. Part of the changes are libFuzzer's own.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using Random = std::minstd_rand;
using Tokens = std::vector<std::string>;

std::size_t below(Random& random, std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
}

bool isWord(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '.' ||
           c == '#' || c == '-' || c == '+';
}

/// Words, strings with their apostrophes, runs of blanks, and single characters.
Tokens tokensOf(std::string_view text) {
    Tokens tokens;
    while (!text.empty()) {
        std::size_t length = 1;
        if (text[0] == '\'') {
            length = std::min(text.find('\'', 1), text.size() - 1) + 1;
        } else if (isWord(text[0])) {
            length = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isWord) - text.begin());
        }
        tokens.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return tokens;
}

std::string joined(const Tokens& tokens) {
    std::string text;
    for (const std::string& token : tokens) {
        text += token;
    }
    return text;
}

/// A field's value as its row wants it, most of the time.
std::string fieldText(const KpIfcAttributeFacts& row, Random& random, int depth = 0) {
    const auto reference = [&] { return "#" + std::to_string(below(random, 20)); };
    const auto one = [&](auto kind) -> std::string {
        using Kind = decltype(kind);
        switch (kind) {
        case Kind::real: return below(random, 2) ? "1.5" : "-1.E-5";
        case Kind::integer: return std::to_string(below(random, 100));
        case Kind::string: return below(random, 2) ? "'x'" : "'\\X2\\00E9\\X0\\'";
        case Kind::reference: return reference();
        case Kind::select:
            switch (below(random, 4)) {
            case 0: return "IFCLABEL('x')";
            case 1: return "IFCLENGTHMEASURE(1.)";
            case 2: return "IFCBOOLEAN(.T.)";
            default: return reference();
            }
        default: return "$";
        }
    };
    if (below(random, 8) == 0 || depth > 0) {
        return below(random, 2) ? "$" : reference();
    }
    switch (row.kind) {
    case KpIfcFieldKind::guid: return "'000000000000000000000" + std::to_string(below(random, 10)) + "'";
    case KpIfcFieldKind::boolean:
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::logical: return below(random, 2) ? ".T." : ".U.";
    case KpIfcFieldKind::derived: return "*";
    case KpIfcFieldKind::enumeration:
        return "." +
               std::string(row.enumeration->literals[below(random, static_cast<std::size_t>(row.enumeration->count))]) +
               ".";
    case KpIfcFieldKind::aggregate: {
        std::string list = "(";
        for (std::size_t n = below(random, 4); n > 0; --n) {
            list += row.aggregate->element == KpIfcElementKind::binary ? "\"0FF\"" : one(row.aggregate->element);
            list += n > 1 ? "," : "";
        }
        return list + ")";
    }
    default: return one(row.kind);
    }
}

/// A record of any entity.
std::string recordText(Random& random) {
    static std::string error;
    static const std::shared_ptr<KpIfcModule> module = KpIfcModule::load("IFC2X3", error);
    require(module != nullptr, error);
    const auto& entities = module->schema().entities().entries();
    const auto& entry = entities[below(random, entities.size())];
    const KpIfcEntityType& type = *module->schema().findEntity(entry.name);
    std::string text = "#" + std::to_string(below(random, 20)) + "=" + entry.name + "(";
    bool next = false;
    for (const KpIfcAttributeFacts* row : type.recordFields()) {
        text += next ? "," : "";
        text += fieldText(*row, random);
        next = true;
    }
    return text + ");\n";
}

const std::string& spice(Random& random) {
    static const Tokens all{"$",
                            "*",
                            "(",
                            ")",
                            ",",
                            ";",
                            "'",
                            "''",
                            "\"0\"",
                            "/*",
                            "*/",
                            ".T.",
                            "1.",
                            "#1",
                            "#0",
                            "\\S\\'",
                            "\n",
                            "\\X2\\",
                            "\\X0\\",
                            "\\P",
                            "()",
                            "ENDSEC;",
                            "DATA;",
                            "HEADER;",
                            "=",
                            "1.E400",
                            "'\\X\\E9'",
                            "2147483647",
                            "#18446744073709551615",
                            "IFCLABEL(",
                            ".",
                            "!A"};
    return all[below(random, all.size())];
}

void change(Tokens& tokens, Random& random) {
    const std::size_t at = below(random, tokens.size() + 1);
    const auto place = tokens.begin() + static_cast<std::ptrdiff_t>(at);
    const std::size_t length = std::min(tokens.size() - at, below(random, 12));
    const auto behind = place + static_cast<std::ptrdiff_t>(length);
    switch (below(random, 6)) {
    case 0: {
        tokens.erase(place, behind);
        break;
    }
    case 1: {
        const Tokens some(place, behind);
        const auto to = static_cast<std::ptrdiff_t>(below(random, tokens.size() + 1));
        tokens.insert(tokens.begin() + to, some.begin(), some.end());
        break;
    }
    case 2: {
        tokens.insert(place, spice(random));
        break;
    }
    case 3: {
        if (place != tokens.end()) *place = tokens[below(random, tokens.size())];
        break;
    }
    case 4: {
        if (place != tokens.end()) *place = spice(random);
        break;
    }
    default: {
        // In front of a record, where there is one.
        const auto mark = std::find_if(place, tokens.end(), [](const std::string& token) { return token[0] == '#'; });
        tokens.insert(mark, recordText(random));
        break;
    }
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
    Random random(seed);
    if (below(random, 3) == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    Tokens tokens = tokensOf({reinterpret_cast<const char*>(data), size});
    for (std::size_t n = below(random, 3) + 1; n > 0; --n) {
        change(tokens, random);
    }
    const std::string text = joined(tokens);
    const std::size_t length = std::min(text.size(), maxSize);
    std::memcpy(data, text.data(), length);
    return length;
}
