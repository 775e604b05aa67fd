#pragma once

#include "Failure.h"

#include <KpIfcCore/KpIfcEntityType.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <regex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// The language of kpifc query, taken apart: what QueryParser makes and QueryEvaluation carries out.
namespace kpifc::query {

/// An expression that cannot be understood; the text shows the place.
struct QueryError : Failure {
    /// `at`: bytes before the place; `what`: "found ..., expected ...".
    QueryError(std::string_view expression, std::size_t at, const std::string& what);
};

/// An entity with its subtypes or, where exact, alone; null for any entity.
struct TypeTest {
    const KP_SDAI::KpIfcEntityType* entity = nullptr;
    bool isExact = false;

    bool holds(const KP_SDAI::KpIfcEntityType* type) const {
        return !entity || (isExact ? type == entity : type->isKindOf(entity));
    }
};

/// A regular expression, or a text that is to occur in another one.
class Pattern {
public:
    static constexpr std::size_t kLongest = 1000;  ///< characters
    static constexpr std::size_t kLargest = 20000; ///< characters with repetitions written out

    /// Throws std::regex_error, also with error_space for one that is too large.
    Pattern(const std::string& text, bool ignoresCase);
    bool isIn(const std::string& text) const;

private:
    std::string m_part; ///< where it has no operators
    std::unique_ptr<std::regex> m_regex;
};

/// An unquoted word: true, false, unknown, or a literal of an enumeration; texts can be written so, too.
struct Word {
    std::string text;
};
struct Unset {};
struct Reference {
    std::uint64_t name;
};
using Literal = std::variant<Unset, double, std::string, Word, Reference>;

struct Condition;

/// One step of a path, from instances to what they have.
struct Step {
    enum class Kind {
        attribute, ///< explicit or inverse, by `name`
        property,  ///< by `set` ("*" for any) and `name`, both as UTF-8
        referrers, ///< what refers to an instance, of a type
        id,
        type
    };
    Kind kind;
    std::string set = {};
    std::string name = {};
    TypeTest referrer = {};
    std::vector<Condition> filters; ///< of the instances that it leads to
};

/// A path from an instance to values.
struct Path {
    std::string text; ///< as it was written
    bool isCount = false;
    std::vector<Step> steps;
};

enum class Comparison { exists, equal, less, lessEqual, greater, greaterEqual, matches };

struct Condition {
    enum class Kind { any, all, no, type, comparison };
    Kind kind;
    std::vector<Condition> parts = {}; ///< of any, all, and the one of no
    TypeTest type = {};
    Path path = {};
    Comparison comparison = Comparison::exists;
    std::vector<Literal> literals = {}; ///< of which one has to do
    std::shared_ptr<const Pattern> pattern = {};
};

/// Instances to begin with, and the way from them to those that are wanted.
struct Selection {
    TypeTest type;
    std::string target; ///< "#15" or a GlobalId, instead of a type
    std::vector<Condition> filters;
    std::vector<Step> steps;
};

/// All instances that one of the selections finds.
using Query = std::vector<Selection>;

} // namespace kpifc::query
