#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSettings.h>

#include "check/HeaderCheck.h"
#include "model/ModelData.h"
#include "part21/FileReader.h"
#include "part21/FileStamp.h"
#include "part21/FileWriter.h"
#include "part21/Findings.h"
#include "part21/LazyReader.h"
#include "part21/OpenSource.h"
#include "part21/Output.h"
#include "part21/ProgressMeter.h"
#include "part21/SourceRewriter.h"
#include "values/SystemMemory.h"

#include <filesystem>
#include <new>

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

struct KpIfcFile::State {
    std::unique_ptr<KpIfcModel> model;
    KpIfcHeader header;
    FileFrame frame;
    KpIfcReport report;
    KpIfcReport writeReport;
    std::size_t listedPerKind = KpIfcReport::kListedPerKind;
    std::string error;
    std::uint64_t size = 0;
    Threading threading{1, 0}; ///< with which it is read

    ProgressMeter progress;
    std::unique_ptr<ByteSource> source; ///< null where nothing was read
    std::string path;                   ///< of the file that was read, if any
    std::string title;                  ///< the same, or what stands for it in messages
    FileStamp stamp;                    ///< of that file, when it was read or last saved
    SourceLayout layout;
    bool isInOperation = false; ///< one of this file's, so that its progress is told and may be stopped

    /// Back to nothing open.
    void reset();
    /// What `operation` answers; eNotAvailable with error() where memory runs out in it.
    template <class Operation>
    KP::ErrorStatus attempt(const std::string& name, Operation operation);
    KP::ErrorStatus open(std::unique_ptr<ByteSource> from, const std::string& name, const KpIfcOpenOptions& options);
    /// Throws ReadAgain where that has to be done once more, by one thread.
    KP::ErrorStatus read(ByteSource& from, const std::string& name, bool lazily);
    /// False where the file is to be read in full, or with `reason` cannot be read.
    bool openLazily(ByteSource& from, std::string& reason);
    /// Reads all of a file that was opened lazily into its model, which is empty. Throws KpIfcException 1000 where that
    /// fails.
    void readFully();
    /// The same; throws ReadAgain as read() does.
    void readWhole();
    KP::ErrorStatus save(const std::string& to, const KpIfcSaveOptions& options);
    /// False where the sink stopped or, with error, where the source is of no use any more.
    bool write(const KpIfcSaveOptions& options, const std::function<bool(std::string_view)>& sink);
};

KpIfcFile::KpIfcFile() : m_state(std::make_unique<State>()) {}
KpIfcFile::KpIfcFile(KpIfcFile&&) noexcept = default;
KpIfcFile& KpIfcFile::operator=(KpIfcFile&&) noexcept = default;
KpIfcFile::~KpIfcFile() = default;

void KpIfcFile::close() {
    if (m_state)
        m_state->reset();
    else
        m_state = std::make_unique<State>(); // was moved from
}

void KpIfcFile::progress(KpIfcProgressFunction function) {
    m_state->progress.function(std::move(function));
}

void KpIfcFile::State::reset() {
    State fresh;
    fresh.listedPerKind = listedPerKind;
    fresh.progress = std::move(progress);
    fresh.progress.reset();
    *this = std::move(fresh);
}

template <class Operation>
KP::ErrorStatus KpIfcFile::State::attempt(const std::string& name, Operation operation) {
    // So short that a string holds them without memory of its own.
    constexpr const char* kNoMemory = "out of memory";
    constexpr const char* kCancelled = "cancelled";
    KP::ErrorStatus status = KP::eNotAvailable;
    struct InOperation {
        bool& is;
        ~InOperation() { is = false; }
    };
    try {
        const InOperation inOperation{isInOperation = true};
        return operation();
    } catch (const std::bad_alloc&) {
        error = kNoMemory;
    } catch (const KpIfcException& failure) { // of a source that is read lazily
        if (failure.code() != 1000) throw;
        error = failure.where();
    } catch (const ProgressMeter::Cancelled&) {
        error = kCancelled;
        status = KP::eCancelled;
    }
    try {
        error = name + ": " + error;
    } catch (const std::bad_alloc&) { // so be it without the name
    }
    return status;
}

void KpIfcFile::listedPerKind(std::size_t count) {
    m_state->listedPerKind = count;
}

KP::ErrorStatus KpIfcFile::State::open(std::unique_ptr<ByteSource> from, const std::string& name,
                                       const KpIfcOpenOptions& options) {
    threading = Threading(options.threads, options.partSize);
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

namespace {

/// Leaves nothing open of which only a part was read, also where the host's function for progress throws.
template <class State, class Operation>
KP::ErrorStatus attemptToOpen(State& state, const std::string& name, Operation operation) {
    KP::ErrorStatus status = KP::eOk;
    try {
        status = state.attempt(name, operation);
    } catch (...) {
        state.reset();
        throw;
    }
    const bool isPartOpen = state.model || status == KP::eCancelled;
    if (status == KP::eOk || !isPartOpen) return status;
    std::string error = std::move(state.error);
    state.reset();
    state.error = std::move(error);
    return status;
}

} // namespace

KP::ErrorStatus KpIfcFile::open(const std::string& path, const KpIfcOpenOptions& options) {
    close();
    return attemptToOpen(*m_state, path, [&] {
        State& state = *m_state;
        std::unique_ptr<ByteSource> source = openSource(path, state.progress, state.error);
        if (!source) return KP::eNotAvailable;
        state.path = state.title = path;
        state.stamp = source->stamp();
        return state.open(std::move(source), path, options);
    });
}

KP::ErrorStatus KpIfcFile::openMemory(const void* data, std::size_t size, const std::string& name,
                                      const KpIfcOpenOptions& options) {
    close();
    return attemptToOpen(*m_state, name, [&] {
        State& state = *m_state;
        std::unique_ptr<ByteSource> source = openSource(data, size, name, state.progress, state.error);
        state.title = name;
        return source ? state.open(std::move(source), name, options) : KP::eNotAvailable;
    });
}

KP::ErrorStatus KpIfcFile::create(const std::string& schemaName) {
    close();
    return attemptToOpen(*m_state, schemaName, [&] {
        std::shared_ptr<KpIfcModule> module = KpIfcModule::load(schemaName, m_state->error);
        if (!module) return KP::eNotAvailable;
        m_state->header = KpIfcHeader::standard(module->schema().name());
        m_state->model = std::make_unique<KpIfcModel>(std::move(module));
        m_state->model->data().utf8 = settings().get_useUTF8();
        return KP::eOk;
    });
}

KP::ErrorStatus KpIfcFile::readAll() {
    State& state = *m_state;
    state.error.clear();
    if (!state.model) {
        state.error = "no model to read";
        return KP::eNotAvailable;
    }
    return state.attempt(state.title, [&] {
        state.model->data().readAll();
        return KP::eOk;
    });
}

KP::ErrorStatus KpIfcFile::State::save(const std::string& to, const KpIfcSaveOptions& options) {
    const auto refuse = [&](const char* reason) {
        error = to + ": " + reason;
        return KP::eNotAvailable;
    };
    if (!model) return refuse("no model to write");
    std::error_code none; // what is missing is not the same
    const std::filesystem::path target(to);
    const bool isSource = source && std::filesystem::equivalent(target, path, none);
    if (isSource && source->isOneOfSeveral()) return refuse("is an archive with further files, which would be lost");
    const auto isOvertaken = [&] {
        return isSource && std::filesystem::is_regular_file(target, none) && FileStamp(to) != stamp;
    };
    constexpr const char* kOvertaken =
        "another program has changed it since it was read; what that wrote would be lost";
    if (isOvertaken()) return refuse(kOvertaken);
    Output output(to, progress);
    if (write(options, [&](std::string_view piece) { return output.write(piece); })) {
        if (isOvertaken()) return refuse(kOvertaken); // writing may have taken long
        if (output.finish()) {
            if (isSource) stamp = FileStamp(to);
            return KP::eOk;
        }
    }
    error = to + ": " + (error.empty() ? output.error() : error);
    return KP::eNotAvailable;
}

KP::ErrorStatus KpIfcFile::save(const std::string& path, const KpIfcSaveOptions& options) {
    return m_state->attempt(path, [&] { return m_state->save(path, options); });
}

KP::ErrorStatus KpIfcFile::saveToMemory(std::string& out, const KpIfcSaveOptions& options) {
    State& state = *m_state;
    out.clear();
    if (!state.model) {
        state.error = "no model to write";
        return KP::eNotAvailable;
    }
    const KP::ErrorStatus status = state.attempt("memory", [&] {
        out.reserve(state.size + state.size / 16); // mostly, what was read is about what is written
        if (out.capacity() > 2 * kLargePage) preferLargePages(out.data(), out.capacity());
        const bool isWritten = state.write(options, [&](std::string_view piece) {
            out.append(piece);
            return true;
        });
        return isWritten ? KP::eOk : KP::eNotAvailable;
    });
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
