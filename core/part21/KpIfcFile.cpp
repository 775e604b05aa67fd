#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSettings.h>

#include "check/HeaderCheck.h"
#include "model/ModelData.h"
#include "part21/FileReader.h"
#include "part21/FileStamp.h"
#include "part21/FileWriter.h"
#include "part21/Findings.h"
#include "part21/OpenSource.h"
#include "part21/Output.h"
#include "part21/ProgressMeter.h"
#include "part21/SourceRewriter.h"

#include <filesystem>

namespace KP_SDAI {

namespace {

/// Does what may be stopped on the way; `undo` is called where it is.
template <class Work, class Undo>
KP::ErrorStatus stoppable(Work work, Undo undo) {
    try {
        return work();
    } catch (const ProgressMeter::Cancelled&) {
        undo();
        return KP::eCancelled;
    } catch (...) {
        undo();
        throw;
    }
}

/// ", the first of them 12:5: note: ..."; empty where none is listed.
std::string firstDeparture(const KpIfcReport& report) {
    const KpIfcReportEntry* first = nullptr;
    for (const KpIfcReportEntry& entry : report.entries())
        if (!entry.isAllowed && (!first || entry.offset < first->offset)) first = &entry;
    return first ? ", the first of them " + first->text() : std::string();
}

} // namespace

struct KpIfcFile::State {
    std::unique_ptr<KpIfcModel> model;
    KpIfcHeader header;
    FileFrame frame;
    KpIfcReport report;
    KpIfcReport writeReport;
    std::size_t listedPerKind = KpIfcReport::kListedPerKind;
    std::string error;
    std::uint64_t size = 0;

    ProgressMeter progress;
    std::unique_ptr<ByteSource> source; ///< null where nothing was read
    std::string path;                   ///< of the file that was read, if any
    FileStamp stamp;                    ///< of that file, when it was read or last saved
    SourceLayout layout;

    KP::ErrorStatus open(std::unique_ptr<ByteSource> from, const std::string& name, const KpIfcOpenOptions& options);
    KP::ErrorStatus save(const std::string& to, const KpIfcSaveOptions& options);
    /// False where the sink stopped or, with error, where the source is of no use any more.
    bool write(const KpIfcSaveOptions& options, const std::function<bool(std::string_view)>& sink);
};

KpIfcFile::KpIfcFile() : m_state(std::make_unique<State>()) {}
KpIfcFile::KpIfcFile(KpIfcFile&&) noexcept = default;
KpIfcFile& KpIfcFile::operator=(KpIfcFile&&) noexcept = default;
KpIfcFile::~KpIfcFile() = default;

void KpIfcFile::close() {
    auto fresh = std::make_unique<State>();
    if (m_state) {
        fresh->listedPerKind = m_state->listedPerKind;
        fresh->progress.function(m_state->progress.function());
    }
    m_state = std::move(fresh);
}

void KpIfcFile::progress(KpIfcProgressFunction function) {
    m_state->progress.function(std::move(function));
}

void KpIfcFile::listedPerKind(std::size_t count) {
    m_state->listedPerKind = count;
}

KP::ErrorStatus KpIfcFile::State::open(std::unique_ptr<ByteSource> from, const std::string& name,
                                       const KpIfcOpenOptions& options) {
    report = KpIfcReport(listedPerKind);
    progress.beginBytes(KpIfcStage::reading, from->fileSize());
    const auto sourceError = [&] {
        return from->hasChanged() ? "another program has changed it while it was read" : from->error();
    };
    FileReader reader(*from, header, frame, layout, report);
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
    model = std::make_unique<KpIfcModel>(std::move(module));
    model->data().utf8 = settings().get_useUTF8();
    model->data().table.expectFile(from->size());
    checkHeader(header, model->schema().name(), report, layout.header);
    size = reader.readData(model->data(), progress);
    if (const std::string unreadable = sourceError(); !unreadable.empty()) {
        error = name + ": " + unreadable;
        model.reset();
        return KP::eNotAvailable;
    }
    if (options.strict && report.departures() != 0) {
        error = name + ": is not as the standard wants it: " + countOf(report.departures(), "departure") +
                firstDeparture(report);
        model.reset();
        return KP::eInvalidInput;
    }
    source = std::move(from);
    return KP::eOk;
}

bool KpIfcFile::State::write(const KpIfcSaveOptions& options, const std::function<bool(std::string_view)>& sink) {
    error.clear();
    writeReport = KpIfcReport(listedPerKind);
    model->commit();
    if (!source || options.normalise) {
        progress.beginItems(KpIfcStage::writing, model->data().instanceCount + model->data().keptCount);
        return writeNormalised(model->data(), header, frame, writeReport, options.normalise, progress, sink);
    }
    progress.beginBytes(KpIfcStage::writing, source->fileSize());
    SourceRewriter rewriter(model->data(), header, layout, writeReport);
    if (rewriter.write(*source, sink)) return true;
    error = rewriter.error();
    return false;
}

KP::ErrorStatus KpIfcFile::open(const std::string& path, const KpIfcOpenOptions& options) {
    close();
    const auto read = [&] {
        State& state = *m_state;
        std::unique_ptr<ByteSource> source = openSource(path, state.progress, state.error);
        if (!source) return KP::eNotAvailable;
        state.path = path;
        state.stamp = source->stamp();
        return state.open(std::move(source), path, options);
    };
    const KP::ErrorStatus status = stoppable(read, [this] { close(); });
    if (status == KP::eCancelled) m_state->error = path + ": cancelled";
    return status;
}

KP::ErrorStatus KpIfcFile::openMemory(const void* data, std::size_t size, const std::string& name,
                                      const KpIfcOpenOptions& options) {
    close();
    const auto read = [&] {
        State& state = *m_state;
        std::unique_ptr<ByteSource> source = openSource(data, size, name, state.progress, state.error);
        return source ? state.open(std::move(source), name, options) : KP::eNotAvailable;
    };
    const KP::ErrorStatus status = stoppable(read, [this] { close(); });
    if (status == KP::eCancelled) m_state->error = name + ": cancelled";
    return status;
}

KP::ErrorStatus KpIfcFile::create(const std::string& schemaName) {
    close();
    std::shared_ptr<KpIfcModule> module = KpIfcModule::load(schemaName, m_state->error);
    if (!module) return KP::eNotAvailable;
    m_state->header = KpIfcHeader::standard(module->schema().name());
    m_state->model = std::make_unique<KpIfcModel>(std::move(module));
    m_state->model->data().utf8 = settings().get_useUTF8();
    return KP::eOk;
}

KP::ErrorStatus KpIfcFile::State::save(const std::string& to, const KpIfcSaveOptions& options) {
    std::error_code none; // what is missing is not the same
    const bool isSource = source && std::filesystem::equivalent(to, path, none);
    if (isSource && source->isOneOfSeveral()) {
        error = to + ": is an archive with further files, which would be lost";
        return KP::eNotAvailable;
    }
    const auto isOvertaken = [&] {
        return isSource && std::filesystem::is_regular_file(to, none) && FileStamp(to) != stamp;
    };
    const auto refuse = [&] {
        error = to + ": another program has changed it since it was read; what that wrote would be lost";
        return KP::eNotAvailable;
    };
    if (isOvertaken()) return refuse();
    Output output(to, progress);
    if (write(options, [&](std::string_view piece) { return output.write(piece); })) {
        if (isOvertaken()) return refuse(); // writing may have taken long
        if (output.finish()) {
            if (isSource) stamp = FileStamp(to);
            return KP::eOk;
        }
    }
    error = to + ": " + (error.empty() ? output.error() : error);
    return KP::eNotAvailable;
}

KP::ErrorStatus KpIfcFile::save(const std::string& path, const KpIfcSaveOptions& options) {
    State& state = *m_state;
    if (!state.model) {
        state.error = path + ": no model to write";
        return KP::eNotAvailable;
    }
    return stoppable([&] { return state.save(path, options); }, [&] { state.error = path + ": cancelled"; });
}

KP::ErrorStatus KpIfcFile::saveToMemory(std::string& out, const KpIfcSaveOptions& options) {
    State& state = *m_state;
    out.clear();
    if (!state.model) {
        state.error = "no model to write";
        return KP::eNotAvailable;
    }
    out.reserve(state.size + state.size / 16); // mostly, what was read is about what is written
    const auto append = [&](std::string_view piece) {
        out.append(piece);
        return true;
    };
    const auto undo = [&] {
        out.clear();
        state.error = "cancelled";
    };
    const auto write = [&] { return state.write(options, append) ? KP::eOk : KP::eNotAvailable; };
    const KP::ErrorStatus status = stoppable(write, undo);
    if (status != KP::eOk) out.clear();
    return status;
}

KpIfcModel* KpIfcFile::model() const {
    return m_state->model.get();
}
KpIfcHeader& KpIfcFile::header() {
    return m_state->header;
}
const KpIfcReport& KpIfcFile::report() const {
    return m_state->report;
}
const KpIfcReport& KpIfcFile::writeReport() const {
    return m_state->writeReport;
}
const std::string& KpIfcFile::error() const {
    return m_state->error;
}
std::uint64_t KpIfcFile::size() const {
    return m_state->size;
}

} // namespace KP_SDAI
