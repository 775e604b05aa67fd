#include "part21/FileWriter.h"

namespace KP_SDAI {

bool writeNormalised(ModelData& data, const KpIfcHeader& header, const FileFrame& frame, KpIfcReport& report,
                     bool isByName, ProgressMeter& progress, const std::function<bool(std::string_view)>& sink) {
    constexpr std::size_t kPiece = 256 * 1024;
    RecordWriter out(data, &report);
    out.put("ISO-10303-21;\nHEADER;\n");
    for (std::size_t i = 0; i < header.records().size(); ++i) {
        out.put(header.source(i));
        out.put(";\n");
    }
    out.put("ENDSEC;\n");
    out.put(frame.beforeData);
    out.put(frame.dataOpening.empty() ? "DATA;" : frame.dataOpening);
    out.put('\n');
    bool ok = true;
    const auto flush = [&](std::size_t atLeast) {
        if (out.text().size() < atLeast) return;
        ok = sink(out.text());
        out.clear();
    };
    const auto putInstance = [&](KpIfcEntityBase* instance) {
        if (!ok) return;
        out.putRecord(*instance);
        out.put('\n');
        flush(kPiece);
        progress.step();
    };
    const auto putRecord = [&](const KeptRecord& record) {
        if (!ok) return;
        out.put(record.text);
        out.put('\n');
        flush(kPiece);
        progress.step();
    };
    if (isByName)
        data.visitInNormalOrder(putInstance, putRecord);
    else
        data.visitInFileOrder(putInstance, putRecord);
    if (!ok) return false;
    out.put("ENDSEC;\n");
    out.put(frame.behindData);
    out.put("END-ISO-10303-21;\n");
    out.put(frame.behindEnd);
    flush(0);
    return ok;
}

} // namespace KP_SDAI
