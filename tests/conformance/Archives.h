#pragma once

#include <string>
#include <string_view>
#include <vector>

/// One gzip member.
std::string gzipped(std::string_view content);
/// What gzip data holds; fails the test where it is damaged.
std::string gunzipped(std::string_view bytes);

struct ZipMember {
    std::string name = {}; ///< ends in '/' for a folder
    std::string content = {};
    bool isStored = false;
    bool isEncrypted = false;
};

/// A zip archive; fails the test where it cannot be made.
std::string zipped(const std::vector<ZipMember>& members);
/// The members of an archive after a check of its consistency; fails the test where it is damaged.
std::vector<ZipMember> unzipped(const std::string& bytes);
