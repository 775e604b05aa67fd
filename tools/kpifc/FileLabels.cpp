#include "FileLabels.h"

#include "Files.h"
#include "JsonText.h"
#include "Terminal.h"
#include "Utf8.h"

#include <utility>

namespace kpifc {

std::string FileLabels::heading(const std::string& path) {
    if (!m_areShown) {
        return "";
    }
    const std::string line = styled(Style::bold, printable(fileLabel(path)) + ':') + '\n';
    return std::exchange(m_isFirst, false) ? line : '\n' + line;
}

std::string FileLabels::prefix(const std::string& path) const {
    return m_areShown ? printable(fileLabel(path)) + ": " : "";
}

std::string FileLabels::opening(const std::string& path) const {
    if (!m_areShown) {
        return "{";
    }
    std::string text = "{\"file\":";
    json::appendText(text, fileLabel(path));
    return text + ',';
}

} // namespace kpifc
