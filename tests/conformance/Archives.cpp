#include "Archives.h"

#include "StepFiles.h"

#include <gtest/gtest.h>

#include <zip.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>

std::string gzipped(std::string_view content) {
    z_stream z{};
    EXPECT_EQ(deflateInit2(&z, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out(deflateBound(&z, content.size()), '\0');
    z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(content.data()));
    z.avail_in = static_cast<uInt>(content.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&z, Z_FINISH), Z_STREAM_END);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

std::string gunzipped(std::string_view bytes) {
    z_stream z{};
    EXPECT_EQ(inflateInit2(&z, 15 + 16), Z_OK);
    z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
    z.avail_in = static_cast<uInt>(bytes.size());
    std::string out;
    int code = Z_OK;
    while (code == Z_OK) {
        char buffer[65536];
        z.next_out = reinterpret_cast<Bytef*>(buffer);
        z.avail_out = sizeof buffer;
        code = inflate(&z, Z_NO_FLUSH);
        out.append(buffer, sizeof buffer - z.avail_out);
    }
    EXPECT_EQ(code, Z_STREAM_END);
    EXPECT_EQ(z.avail_in, 0u);
    inflateEnd(&z);
    return out;
}

std::string zipped(const std::vector<ZipMember>& members) {
    const std::filesystem::path path = temporaryPath("made.zip");
    zip_t* const zip = zip_open(path.string().c_str(), ZIP_CREATE | ZIP_EXCL, nullptr);
    if (!zip) {
        ADD_FAILURE() << path;
        return {};
    }
    for (const ZipMember& member : members) {
        if (member.name.ends_with('/')) {
            EXPECT_GE(zip_dir_add(zip, member.name.c_str(), 0), 0);
            continue;
        }
        zip_source_t* const source = zip_source_buffer(zip, member.content.data(), member.content.size(), 0);
        const zip_int64_t index = zip_file_add(zip, member.name.c_str(), source, 0);
        EXPECT_GE(index, 0);
        const zip_uint64_t at = static_cast<zip_uint64_t>(index);
        if (member.isStored) {
            EXPECT_EQ(zip_set_file_compression(zip, at, ZIP_CM_STORE, 0), 0);
        }
        if (member.isEncrypted) {
            EXPECT_EQ(zip_file_set_encryption(zip, at, ZIP_EM_AES_256, "secret"), 0);
        }
    }
    EXPECT_EQ(zip_close(zip), 0);
    const std::string bytes = contentOf(path);
    std::filesystem::remove(path);
    return bytes;
}

std::vector<ZipMember> unzipped(const std::string& bytes) {
    const std::filesystem::path path = temporaryPath("read.zip");
    std::ofstream(path, std::ios::binary) << bytes;
    zip_t* const zip = zip_open(path.string().c_str(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
    std::filesystem::remove(path);
    std::vector<ZipMember> members;
    if (!zip) {
        ADD_FAILURE() << "no consistent zip archive";
        return members;
    }
    for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
        const zip_uint64_t at = static_cast<zip_uint64_t>(i);
        ZipMember member{zip_get_name(zip, at, ZIP_FL_ENC_STRICT), "", false, false};
        zip_file_t* const file = zip_fopen_index(zip, at, 0);
        char buffer[65536];
        zip_int64_t got = 0;
        while (file && (got = zip_fread(file, buffer, sizeof buffer)) > 0)
            member.content.append(buffer, static_cast<std::size_t>(got));
        EXPECT_TRUE(file && got == 0) << member.name;
        if (file) zip_fclose(file);
        members.push_back(member);
    }
    zip_discard(zip);
    return members;
}
