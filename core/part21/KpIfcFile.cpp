#include <KpIfcCore/KpIfcFile.h>
#include <KpIfcCore/KpIfcModule.h>
#include <KpIfcCore/KpIfcSettings.h>

#include "model/ModelData.h"
#include "part21/ByteSource.h"
#include "part21/FileReader.h"
#include "part21/Output.h"
#include "part21/RecordWriter.h"

namespace KP_SDAI {

struct KpIfcFile::State {
    std::unique_ptr<KpIfcModel> model;
    KpIfcHeader header;
    FileFrame frame;
    KpIfcReport report;
    KpIfcReport writeReport;
    std::string error;
    std::uint64_t size = 0;

    KP::ErrorStatus open(ByteSource& source, const std::string& name);
    bool write(const std::function<bool(std::string_view)>& sink) {
        model->commit();
        writeReport.clear();
        return RecordWriter(model->data()).writeFile(header, frame, writeReport, sink);
    }
};

KpIfcFile::KpIfcFile() : m_state(std::make_unique<State>()) {}
KpIfcFile::KpIfcFile(KpIfcFile&&) noexcept = default;
KpIfcFile& KpIfcFile::operator=(KpIfcFile&&) noexcept = default;
KpIfcFile::~KpIfcFile() = default;

void KpIfcFile::close() {
    m_state = std::make_unique<State>();
}

KP::ErrorStatus KpIfcFile::State::open(ByteSource& source, const std::string& name) {
    FileReader reader(source, header, frame, report);
    std::string schema;
    if (!reader.readHeader(schema)) {
        error = name + ": " + reader.error();
        return source.error().empty() ? KP::eInvalidInput : KP::eNotAvailable;
    }
    std::string reason;
    std::shared_ptr<KpIfcModule> module = KpIfcModule::load(schema, reason);
    if (!module) {
        error = name + ": " + reason;
        return KP::eInvalidInput;
    }
    model = std::make_unique<KpIfcModel>(std::move(module));
    model->data().utf8 = settings().get_useUTF8();
    model->data().table.expectFile(source.size());
    size = reader.readData(model->data());
    if (!source.error().empty()) {
        error = name + ": " + source.error();
        model.reset();
        return KP::eNotAvailable;
    }
    return KP::eOk;
}

KP::ErrorStatus KpIfcFile::open(const std::string& path) {
    close();
    const std::unique_ptr<FileSource> source = FileSource::open(path, m_state->error);
    return source ? m_state->open(*source, path) : KP::eNotAvailable;
}

KP::ErrorStatus KpIfcFile::openMemory(const void* data, std::size_t size, const std::string& name) {
    close();
    MemorySource source(data, size);
    return m_state->open(source, name);
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

KP::ErrorStatus KpIfcFile::save(const std::string& path) {
    State& state = *m_state;
    state.error.clear();
    if (!state.model) {
        state.error = path + ": no model to write";
        return KP::eNotAvailable;
    }
    Output output(path);
    const bool ok = state.write([&](std::string_view piece) { return output.write(piece); }) && output.finish();
    if (ok) return KP::eOk;
    state.error = path + ": " + output.error();
    return KP::eNotAvailable;
}

KP::ErrorStatus KpIfcFile::saveToMemory(std::string& out) {
    out.clear();
    m_state->error.clear();
    if (!m_state->model) {
        m_state->error = "no model to write";
        return KP::eNotAvailable;
    }
    out.reserve(m_state->size + m_state->size / 16); // mostly, what was read is about what is written
    m_state->write([&](std::string_view piece) {
        out.append(piece);
        return true;
    });
    return KP::eOk;
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
