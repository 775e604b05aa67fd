#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kpifcgen::emit {

/// A skeleton and the values for its holes do not fit together: a fault of the emitter, not of its input.
class PrinterError : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

struct Value {
    std::string_view hole;
    std::string_view text;
};

/// Fills the named holes of a skeleton: "$name$" becomes the text of that name, "$$" a dollar sign. One line feed at
/// the start of the skeleton is dropped, so that a raw string can begin on a line of its own.
///
/// - The lines of a text after its first get the indentation of the hole's line, except empty ones.
/// - Where a hole stands alone on its line, a line feed at the end of its text is dropped; where its text is empty, the
///   whole line is.
/// - A text that belongs to no hole, a hole without text and a hole without end throw PrinterError.
std::string print(std::string_view skeleton, std::initializer_list<Value> values);

} // namespace kpifcgen::emit
