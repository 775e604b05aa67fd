#include "report/Page.h"

#include "Interrupt.h"
#include "report/PageData.h"
#include "report/PageFiles.h"
#include "report/PageSummary.h"

#include <KpIfcCore/KpIfcVersion.h>

#include <map>
#include <string_view>
#include <utility>

using namespace KP_SDAI;

namespace kpifc::page {

namespace {

/// The skeleton with its holes filled by values, or else by files; what fills them is not looked at again.
std::string filled(std::string_view skeleton, const std::map<std::string_view, std::string>& values) {
    std::string out;
    for (std::size_t open; (open = skeleton.find("{{")) != skeleton.npos;) {
        const std::size_t close = skeleton.find("}}", open);
        const std::string_view name = skeleton.substr(open + 2, close - open - 2);
        const auto value = values.find(name);
        out += skeleton.substr(0, open);
        out += value != values.end() ? std::string_view(value->second) : pageFiles().at(name);
        skeleton.remove_prefix(close + 2);
    }
    return out += skeleton;
}

} // namespace

std::string pageOf(KpIfcFile& file, const std::string& path, const KpIfcReport& findings,
                   const KpIfcProgressFunction& progress) {
    const KpIfcModel& model = *file.model();
    const BuildingTree tree(model);
    const PageNodes nodes(model, tree, findings);
    PageProperties properties(model);
    KpIfcProgress state{KpIfcStage::writing, false, 0, nodes.handles().size()};
    std::string data;
    appendData(data, model, tree, nodes, properties, [&] {
        ++state.done;
        if (progress && !progress(state)) {
            stopIfInterrupted();
        }
    });
    return filled(pageFiles().at("page.html"), {{"version", KPIFC_VERSION},
                                                {"title", title(model, path)},
                                                {"subtitle", subtitle(model, file.header(), path, file.size())},
                                                {"counts", counts(model, findings, properties.valueCount())},
                                                {"contents", contents(model)},
                                                {"findings", page::findings(model, nodes, findings)},
                                                {"header", headerFacts(file.header())},
                                                {"data", std::move(data)}});
}

} // namespace kpifc::page
