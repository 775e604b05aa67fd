#pragma once

#include "part21/ByteSource.h"

#include <memory>
#include <string>
#include <string_view>

namespace KP_SDAI {

/// The STEP file in a zip archive: its only member whose name ends in .ifc, in any letter case; where there is none,
/// its only member. Checksum and size are checked while it is read.
class ZipSource : public ByteSource {
public:
    /// Null, with the reason in `error`, where there is no archive, no such member, or it is encrypted.
    static std::unique_ptr<ZipSource> open(const std::string& path, std::string& error);
    /// The same for an archive in memory.
    static std::unique_ptr<ZipSource> openContent(std::string content, std::string& error);
    ~ZipSource() override;
    /// Whether bytes with this start are a zip archive, which may be empty or the first of several parts.
    static bool isZip(std::string_view start) {
        using namespace std::string_view_literals;
        return start == "PK\3\4"sv || start == "PK\5\6"sv || start == "PK\7\10"sv;
    }

    std::size_t read(char* to, std::size_t size) override;
    bool rewind() override;
    std::string error() const override { return m_error; }
    std::uint64_t size() const override;
    /// In proportion to what was unpacked.
    std::uint64_t place() const override;
    std::uint64_t fileSize() const override;
    FileStamp stamp() const override;
    bool hasChanged() const override;
    bool isOneOfSeveral() const override;

private:
    struct Archive;

    explicit ZipSource(std::unique_ptr<Archive> archive);
    static std::unique_ptr<ZipSource> make(std::unique_ptr<Archive> archive, std::string& error);
    bool openMember();

    std::unique_ptr<Archive> m_archive;
    std::string m_error;
};

} // namespace KP_SDAI
