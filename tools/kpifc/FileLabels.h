#pragma once

#include <string>
#include <vector>

namespace kpifc {

/// How results tell which of several files they are of; those of a single file do not tell it.
class FileLabels {
public:
    explicit FileLabels(const std::vector<std::string>& paths) : m_areShown(paths.size() > 1) {}

    bool areShown() const { return m_areShown; }
    /// A line above the results of a file, with an empty one before all but the first. Empty where labels are not
    /// shown.
    std::string heading(const std::string& path);
    /// What stands before each line of results: "house.ifc: ". Empty where labels are not shown.
    std::string prefix(const std::string& path) const;
    /// What a JSON object begins with: "{", with the file as the first key where labels are shown.
    std::string opening(const std::string& path) const;

private:
    bool m_areShown;
    bool m_isFirst = true;
};

} // namespace kpifc
