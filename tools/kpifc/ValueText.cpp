#include "ValueText.h"

#include "Files.h"
#include "ValueWalk.h"

#include <KpIfcCore/KpStepText.h>

#include <fmt/format.h>

#include <vector>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct List {
    std::size_t count = 0;
    std::size_t cut = 0; ///< where in the text what is not shown begins
};

struct Writer {
    std::string& out;
    const Labels& labels;
    bool isUtf8;
    std::optional<std::size_t> most;
    std::vector<List> lists = {}; ///< that are being written, the outermost first

    void null() { out += '-'; }
    void real(double value) { out += fmt::format("{}", value); }
    void integer(int value) { out += std::to_string(value); }
    void truth(KpIfcLogical value) {
        constexpr const char* texts[] = {"false", "true", "unknown"};
        out += texts[value.code()];
    }
    void text(std::string_view value) { out += quotedName(isUtf8 ? value : KpStepText::decode(value)); }
    void literal(const char* value) { out += value; }
    void reference(const KpDbObjectId& value) {
        if (lists.empty() || !most || lists.back().count <= *most) { // what is cut off needs no label
            out += labels.reference(value);
        }
    }
    void beginTyped(const char* name) {
        out += name;
        out += ' ';
    }
    void endTyped() {}
    void beginList() {
        out += '[';
        lists.emplace_back();
    }
    void nextItem() {
        List& list = lists.back();
        if (most && list.count == *most) {
            list.cut = out.size();
        }
        out += list.count++ ? ", " : "";
    }
    void endList() {
        const List list = lists.back();
        lists.pop_back();
        if (list.cut) {
            out.resize(list.cut);
            out += ", ... " + grouped(list.count) + " in all";
        }
        out += ']';
    }
};

} // namespace

void ValueText::attribute(const KpIfcVariant& value) {
    Writer writer{m_out, m_labels, m_isUtf8, m_most};
    ValueWalk(writer).walk(value, true);
}

} // namespace kpifc
