#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSettings.h>

#include "model/ModelData.h"
#include "part21/FileState.h"
#include "part21/FileWriter.h"
#include "part21/OpenSource.h"
#include "part21/Output.h"
#include "part21/SourceRewriter.h"
#include "values/SystemMemory.h"

#include <filesystem>

namespace KP_SDAI {

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

void KpIfcFile::listedPerKind(std::size_t count) {
    m_state->listedPerKind = count;
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
