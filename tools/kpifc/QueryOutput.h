#pragma once

#include "Output.h"
#include "QueryValues.h"

#include <memory>
#include <string>
#include <vector>

namespace kpifc::query {

/// How kpifc query prints what it finds: a row for each instance, a cell for each column.
class Rows {
public:
    virtual ~Rows() = default;
    virtual void add(const std::string& file, const std::vector<Values>& cells) = 0;
    /// After the last one.
    virtual void end() {}
};

struct Heading {
    std::vector<std::string> columns;
    bool isShown = true;   ///< in tables
    bool withFile = false; ///< the file's name comes first
};

/// For people: aligned; on a terminal no wider than that is.
std::unique_ptr<Rows> tableRows(Output& output, Heading heading);
/// RFC 4180, with a line of names.
std::unique_ptr<Rows> csvRows(Output& output, Heading heading);
/// An object a line; several values as arrays, none as null.
std::unique_ptr<Rows> jsonRows(Output& output, Heading heading);

} // namespace kpifc::query
