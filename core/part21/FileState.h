#pragma once

#include <KpIfcCore/KpIfcException.h>
#include <KpIfcCore/KpIfcFile.h>

#include "part21/ByteSource.h"
#include "part21/FileFrame.h"
#include "part21/FileStamp.h"
#include "part21/ProgressMeter.h"
#include "part21/SourceLayout.h"
#include "part21/Threading.h"

#include <functional>
#include <new>
#include <string_view>

namespace KP_SDAI {

/// What stands behind a KpIfcFile: what is open, and what it takes to write it again.
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

} // namespace KP_SDAI
