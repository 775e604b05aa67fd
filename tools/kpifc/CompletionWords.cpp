#include "CompletionWords.h"

#include "HelpText.h"

#include <algorithm>

namespace kpifc::completion {

Words namesOf(const std::vector<Command>& commands) {
    Words names;
    for (const Command& command : commands) {
        names.emplace_back(command.name);
    }
    return names;
}

std::vector<Option> toldOptions(std::vector<Option> options) {
    std::erase_if(options, [](const Option& option) { return option.isHidden; });
    return options;
}

bool hasOperand(const Command& command, WordKind kind) {
    return std::any_of(command.operands.begin(), command.operands.end(),
                       [kind](const Operand& operand) { return operand.kind == kind; });
}

Words choicesOf(const Command& command, const std::vector<Command>& commands) {
    Words words;
    for (const Operand& operand : command.operands) {
        words.insert(words.end(), operand.choices.begin(), operand.choices.end());
    }
    if (hasOperand(command, WordKind::topic)) {
        words = namesOf(commands);
        for (const Topic& topic : topics(commands)) {
            words.emplace_back(topic.name);
        }
    }
    return words;
}

std::string quoted(std::string_view text, std::string_view apostrophe) {
    std::string out = "'";
    for (const char c : text) {
        out += c == '\'' ? std::string(apostrophe) : std::string(1, c);
    }
    return out + '\'';
}

std::string withTexts(std::string_view script, const std::vector<std::pair<std::string, std::string>>& texts) {
    std::string out(script);
    for (const auto& [name, text] : texts) {
        const std::string mark = '@' + name + '@';
        out.replace(out.find(mark), mark.size(), text);
    }
    return out;
}

} // namespace kpifc::completion
