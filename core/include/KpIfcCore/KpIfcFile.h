#pragma once

#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcHeader.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcProgress.h>
#include <KpIfcCore/KpIfcReport.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace KP_SDAI {

/// How a file is read.
struct KpIfcOpenOptions {
    /// What the standard or the schema forbids, however harmless, ends opening (KpIfcReport::departures()).
    bool strict = false;
    /// How many threads read at most, the caller's included: 0 for as many as the machine runs at once, 1 for none
    /// besides the caller's. What is read is the same with any number, to the last bit. None is started for files under
    /// a megabyte, and none is left when opening returns.
    unsigned threads = 0;
    /// Finds only where records begin and of which entities they are, and reads each when it is first touched: opening
    /// costs a fraction of the time and memory. For programs that look at little of a large file: some instances by
    /// name or GlobalId, those of one entity and what they refer to, how many there are. The results are those of a
    /// full reading, whatever is asked.
    ///
    ///  - Whatever needs all instances has all that is left read first, once (KpIfcModel::commit(), readAll()): inverse
    ///    attributes, referrers, saving, checking, copying, and any change, so also a getter that hands out what could
    ///    be changed on a model whose mode is kReadWrite. So has touching a good part of them one by one.
    ///  - report() tells what was met so far, see KpIfcReport::isComplete().
    ///  - A model is one thread's until it isWhole(), also for reading.
    ///  - The file stays needed: a touch throws KpIfcException 1000 where another program has written to the file since
    ///    it was opened, or it cannot be read; std::bad_alloc where memory runs out. Either way the touched instance
    ///    stays unread and all that was read stays as it is.
    ///
    /// Files in which something is out of the ordinary (records without end, doubled or widely scattered names,
    /// unknown entities, several data sections, ...) are read in full at once, so are compressed ones, pipes, and all
    /// where reading is `strict`.
    bool lazy = false;
};

/// How a file is written.
struct KpIfcSaveOptions {
    /// Writes every record anew, one a line, ascending by name, without comments and what else is no part of the model.
    bool normalise = false;
};

/// A STEP physical file (ISO 10303-21): its header and its model.
///
///     KpIfcFile file;
///     if (file.open("house.ifc") != KP::eOk) std::cerr << file.error();
///     for (IfcWall* wall : file.model()->instances<IfcWall>()) ...
///
/// Reading is total: whatever the bytes are, the result is a model and a report, or an error where not even the schema
/// can be told. Nothing that was read is lost: records that fit no class keep their text, so do single fields that
/// their attribute cannot hold, and both are written back.
///
/// Writing leaves alone what nobody changed: records whose content is what was read, comments, spacing and order are
/// copied from the source byte for byte. Changed records are written anew at their places, further ones behind the
/// last, erased ones are left out; so it is with header records. For that a file that is open keeps its source open.
///
/// **Out of memory.** Operations that answer with a status do not throw where memory runs out: they answer
/// eNotAvailable, error() says so. After open, openMemory and create nothing is open then; after a save that failed,
/// for this or any other reason, the model is as it was and can be saved again. Everything else throws std::bad_alloc;
/// for what that leaves of a model see KpIfcModel.
///
/// **Threads.** A file is one thread's at a time; different files, also of one path, have nothing to do with each
/// other. While its thread saves, others may read its model, if that is at rest (KpIfcModel).
class KPIFCCORE_EXPORT KpIfcFile {
public:
    KpIfcFile();
    KpIfcFile(KpIfcFile&&) noexcept;
    KpIfcFile& operator=(KpIfcFile&&) noexcept;
    ~KpIfcFile();

    /// Reads a file; what was open before is closed. eNotAvailable where it cannot be read, eInvalidInput where it is
    /// no STEP file, its schema has no module, or reading is strict and the file departs from the standard; error()
    /// then says why, and there is no model. eOk also where report() has findings; it has them where strict reading
    /// fails, too. The file may be compressed by gzip or stand in a zip archive (.ifczip): its first bytes tell.
    ///
    /// Other programs may replace, rename or delete the file at any time: what was opened stays readable. One that
    /// writes into it while it is read makes opening fail with eNotAvailable, rather than giving a mix of two contents.
    /// eCancelled where progress() stopped it; nothing is open then, nor after its exceptions.
    KP::ErrorStatus open(const std::string& path, const KpIfcOpenOptions& options = {});
    /// Reads a file from memory, which is copied, so not needed afterwards. `name` stands for the path in messages.
    KP::ErrorStatus openMemory(const void* data, std::size_t size, const std::string& name = "memory",
                               const KpIfcOpenOptions& options = {});
    /// Begins a new, empty file of a schema ("IFC2X3").
    KP::ErrorStatus create(const std::string& schemaName);
    /// Reads what a lazy open has left, and makes report() complete; eOk also where nothing was. Instances that were
    /// touched before stay where they are. Where it fails (eNotAvailable with error(), eCancelled) all is as it was.
    KP::ErrorStatus readAll();
    void close();

    /// Writes header and model, also over the file that was read, compressed where the path ends in .gz, .ifczip or
    /// .zip. The target is replaced when all is on the disk; it keeps its permissions. Findings go to writeReport().
    /// eNotAvailable with error() where that fails, also where another program has changed the source since it was
    /// read, or the file at its path, which would be replaced; what was at `path` is then as it was. A normalised save
    /// needs no source. eCancelled where progress() stopped it; then, and after its exceptions, the target and the
    /// model are as they were and can be saved, and no other file is left. What is no regular file, such as a pipe, has
    /// got what was written by then.
    KP::ErrorStatus save(const std::string& path, const KpIfcSaveOptions& options = {});
    /// The same into memory; `out` is empty where that fails or is stopped.
    KP::ErrorStatus saveToMemory(std::string& out, const KpIfcSaveOptions& options = {});

    /// Who is told how far opening and saving have come, from the next call on; none to tell nobody. close() does not
    /// change that.
    void progress(KpIfcProgressFunction function);

    /// Null while nothing is open.
    KpIfcModel* model() const;
    KpIfcHeader& header();
    const KpIfcReport& report() const;
    const KpIfcReport& writeReport() const;
    /// How many findings of each kind the reports of files list that are opened from now on; KpIfcReport::kAll for all.
    void listedPerKind(std::size_t count);
    /// Why the last operation failed; empty where it did not.
    const std::string& error() const;
    /// Bytes of the file that was read.
    std::uint64_t size() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace KP_SDAI
