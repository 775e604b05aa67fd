#include "report/PageText.h"

#include "Utf8.h"

namespace kpifc::page {

void appendHtml(std::string& out, std::string_view text) {
    for (const char c : printable(text)) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        default: out += c;
        }
    }
}

std::string html(std::string_view text) {
    std::string out;
    appendHtml(out, text);
    return out;
}

void appendJsonScript(std::string& out, std::string_view id, std::string_view json) {
    out += "<script type=\"application/json\" id=\"";
    out += id;
    out += "\">";
    // '<' stands in texts only, where it may as well be escaped: neither "</script" nor "<!--" is left.
    while (!json.empty()) {
        const std::string_view plain = json.substr(0, json.find('<'));
        out += plain;
        json.remove_prefix(plain.size());
        if (!json.empty()) {
            out += "\\u003c";
            json.remove_prefix(1);
        }
    }
    out += "</script>\n";
}

void appendName(std::string& json, std::uint64_t instanceName) {
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 53;
    const char* const quote = instanceName > kLargest ? "\"" : "";
    json += quote + std::to_string(instanceName) + quote;
}

std::string addressOf(std::uint64_t instanceName) {
    return "#i" + std::to_string(instanceName);
}

} // namespace kpifc::page
