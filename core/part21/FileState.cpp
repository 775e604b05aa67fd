#include "part21/FileState.h"

#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSettings.h>

#include "check/HeaderCheck.h"
#include "model/ModelData.h"
#include "part21/FileReader.h"
#include "part21/Findings.h"
#include "part21/LazyReader.h"
#include "part21/SmallParts.h"

namespace KP_SDAI {

namespace {

/// ", the first of them 12:5: note: ..."; empty where none is listed.
std::string firstDeparture(const KpIfcReport& report) {
    const KpIfcReportEntry* first = nullptr;
    for (const KpIfcReportEntry& entry : report.entries())
        if (!entry.isAllowed && (!first || entry.offset < first->offset)) first = &entry;
    return first ? ", the first of them " + first->text() : std::string();
}

/// Nobody is told of progress, nor can stop it, while this lives.
class Untold {
public:
    Untold(ProgressMeter& meter, bool is) : m_meter(meter), m_function(meter.function()) {
        if (is) meter.function({});
    }
    ~Untold() { m_meter.function(std::move(m_function)); }

private:
    ProgressMeter& m_meter;
    KpIfcProgressFunction m_function;
};

std::unique_ptr<KpIfcModel> newModel(std::shared_ptr<KpIfcModule> module, const ByteSource& source) {
    auto model = std::make_unique<KpIfcModel>(std::move(module));
    model->data().utf8 = settings().get_useUTF8();
    model->data().table.expectFile(source.size());
    return model;
}

} // namespace

void KpIfcFile::State::reset() {
    State fresh;
    fresh.listedPerKind = listedPerKind;
    fresh.progress = std::move(progress);
    fresh.progress.reset();
    *this = std::move(fresh);
}

KP::ErrorStatus KpIfcFile::State::open(std::unique_ptr<ByteSource> from, const std::string& name,
                                       const KpIfcOpenOptions& options) {
    threading = Threading(options.threads, SmallParts::size());
    if (!threading.isOfUse(from->size())) threading.threads = 1;
    KP::ErrorStatus status = KP::eOk;
    try {
        status = read(*from, name, options.lazy && !options.strict && from->isDirect());
    } catch (const ReadAgain&) {
        model.reset();
        header = KpIfcHeader();
        frame = FileFrame();
        layout = SourceLayout();
        if (!from->rewind()) {
            error = name + ": " + from->error();
            return KP::eNotAvailable;
        }
        threading.threads = 1;
        status = read(*from, name, false);
    }
    if (status != KP::eOk) return status;
    if (options.strict && report.departures() != 0) {
        error = name + ": is not as the standard wants it: " + countOf(report.departures(), "departure") +
                firstDeparture(report);
        model.reset();
        return KP::eInvalidInput;
    }
    source = std::move(from);
    return KP::eOk;
}

KP::ErrorStatus KpIfcFile::State::read(ByteSource& from, const std::string& name, bool lazily) {
    report = KpIfcReport(listedPerKind);
    progress.beginBytes(KpIfcStage::reading, from.fileSize());
    const auto sourceError = [&] {
        return from.hasChanged() ? "another program has changed it while it was read" : from.error();
    };
    FileReader reader(from, header, frame, layout, report, threading);
    std::string schema;
    if (!reader.readHeader(schema)) {
        const std::string reason = sourceError();
        error = name + ": " + (reason.empty() ? reader.error() : reason);
        return reason.empty() ? KP::eInvalidInput : KP::eNotAvailable;
    }
    std::string reason;
    std::shared_ptr<KpIfcModule> module = KpIfcModule::load(schema, reason);
    if (!module) {
        error = name + ": " + reason;
        return KP::eInvalidInput;
    }
    model = newModel(module, from);
    checkHeader(header, model->schema().name(), report, layout.header);
    std::string unreadable;
    if (lazily) {
        if (openLazily(from, unreadable)) return KP::eOk;
        model = newModel(std::move(module), from);
    }
    if (unreadable.empty()) {
        size = reader.readData(model->data(), progress);
        unreadable = sourceError();
    }
    if (!unreadable.empty()) {
        error = name + ": " + unreadable;
        model.reset();
        return KP::eNotAvailable;
    }
    return KP::eOk;
}

bool KpIfcFile::State::openLazily(ByteSource& from, std::string& reason) {
    auto records = LazyReader::open(
        from, layout.headerEnd, model->data(), report, progress, [this] { readFully(); }, reason);
    if (!records) return false;
    size = records->fileSize();
    model->data().leaveUnread(std::move(records));
    report.isComplete(false);
    for (KpIfcReportEntry& entry : report.located()) entry.line = 0;
    return true;
}

void KpIfcFile::State::readFully() {
    const Untold untold(progress, !isInOperation);
    try {
        readWhole();
    } catch (const ReadAgain&) {
        model->data().forgetRead();
        threading.threads = 1;
        readWhole();
    }
}

void KpIfcFile::State::readWhole() {
    KpIfcHeader asRead; // what the program makes of the header is its own
    FileFrame wholeFrame;
    SourceLayout wholeLayout;
    KpIfcReport wholeReport(listedPerKind);
    std::string schema;
    FileReader reader(*source, asRead, wholeFrame, wholeLayout, wholeReport, threading);
    progress.beginBytes(KpIfcStage::reading, source->fileSize());
    std::uint64_t wholeSize = 0;
    if (source->rewind() && reader.readHeader(schema)) {
        checkHeader(asRead, model->schema().name(), wholeReport, wholeLayout.header);
        wholeSize = reader.readData(model->data(), progress);
    }
    const bool isOther = wholeSize == 0 && source->error().empty(); // though it does not look so
    const std::string reason = isOther || source->hasChanged() ? kSourceHasChanged : source->error();
    if (!reason.empty()) throw KpIfcException(1000, "Underlying system error", reason.c_str());
    size = wholeSize;
    frame = std::move(wholeFrame);
    layout = std::move(wholeLayout);
    report = std::move(wholeReport);
}

} // namespace KP_SDAI
