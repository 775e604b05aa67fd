#include "ValueText.h"

#include "Files.h"
#include "ShortenedLists.h"
#include "ValueWalk.h"

#include <KpIfcCore/KpStepText.h>

#include <fmt/format.h>

using namespace KP_SDAI;

namespace kpifc {

namespace {

struct Writer {
    std::string& out;
    const Labels& labels;
    bool isUtf8;
    ShortenedLists lists;

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
        if (!lists.isCut()) { // what is cut off needs no label
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
        lists.begin();
    }
    void nextItem() { lists.next(); }
    void endList() {
        if (const std::size_t count = lists.end()) {
            out += ", ... " + grouped(count) + " in all";
        }
        out += ']';
    }
};

} // namespace

void ValueText::attribute(const KpIfcVariant& value) {
    Writer writer{m_out, m_labels, m_isUtf8, ShortenedLists(m_out, m_most, ", ")};
    ValueWalk(writer).walk(value, true);
}

} // namespace kpifc
