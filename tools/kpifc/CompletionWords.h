#pragma once

#include "CommandLine.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the scripts for all shells are made of.
namespace kpifc::completion {

using Words = std::vector<std::string>;

/// Prints the names of entities.
inline constexpr std::string_view kEntities = "kpifc schema --names 2>/dev/null";

Words namesOf(const std::vector<Command>& commands);
std::vector<Option> toldOptions(std::vector<Option> options);
bool hasOperand(const Command& command, WordKind kind);
/// All words that operands of a command can be, where they are few.
Words choicesOf(const Command& command, const std::vector<Command>& commands);
/// A text in single quotes; `apostrophe` is how one is written in them.
std::string quoted(std::string_view text, std::string_view apostrophe = "'\\''");
/// A script with texts in the place of "@NAME@".
std::string withTexts(std::string_view script, const std::vector<std::pair<std::string, std::string>>& texts);

} // namespace kpifc::completion
