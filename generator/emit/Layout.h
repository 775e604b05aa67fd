#pragma once

#include "emit/File.h"
#include "plan/ModulePlan.h"

#include <string>
#include <string_view>
#include <vector>

/// Texts that several families of files share.
namespace kpifcgen::emit {

/// "prefix a, b, c suffix" on as few lines as 120 columns allow, for a text that will be indented by `indentation`;
/// further lines begin below the first item. `separator` and `suffix` follow an item without a blank.
std::string fill(std::size_t indentation, std::string_view prefix, const std::vector<std::string>& items,
                 std::string_view separator, std::string_view suffix);

/// A function defined in its class: on one line where 120 columns allow.
std::string inlineFunction(std::size_t indentation, std::string_view signature, std::string_view statement);

/// Documentation of what follows, broken at blanks.
std::string comment(std::size_t indentation, std::string_view text);

/// One line per text.
std::string lines(const std::vector<std::string>& texts, std::string_view prefix, std::string_view suffix);

File header(const plan::Frame& frame, const plan::Files& files, std::string_view body);

/// `familyInclude` is the hand-written header of the family, empty for none.
File source(const plan::Frame& frame, const plan::Files& files, std::string_view familyInclude, std::string_view body);

} // namespace kpifcgen::emit
