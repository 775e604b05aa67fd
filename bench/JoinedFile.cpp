#include "JoinedFile.h"

#include "SampleFiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kGlobalIdDigits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr std::size_t kGlobalIdLength = 22;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isGlobalId(std::string_view text) {
    return text.size() == kGlobalIdLength && text.find_first_not_of(kGlobalIdDigits) == std::string_view::npos;
}

/// The records of a file, taken apart where copies of them differ.
class Records {
public:
    explicit Records(const fs::path& path) {
        const UnpackedFile unpacked(path);
        std::ifstream in(unpacked.path(), std::ios::binary);
        m_text.assign(std::istreambuf_iterator<char>(in), {});
        const std::size_t data = find("DATA;", 0);
        m_begin = data + std::strlen("DATA;");
        m_end = find("ENDSEC;", m_begin);
        for (std::size_t at = m_begin; at < m_end;) {
            at = note(at);
        }
    }

    std::string_view header() const { return std::string_view(m_text).substr(0, m_begin); }
    std::size_t size() const { return m_end - m_begin; }
    std::uint64_t highestName() const { return m_highest; }

    /// Adds the records to `out`, their names higher by `shift`, with GlobalIds that belong to copy number `copy`.
    void append(std::string& out, std::uint64_t shift, std::uint64_t copy) const {
        std::size_t from = m_begin;
        for (const Place& place : m_places) {
            out.append(m_text, from, place.begin - from);
            if (place.name != 0) {
                std::array<char, 24> digits;
                out.append(digits.data(), std::to_chars(digits.begin(), digits.end(), place.name + shift).ptr);
                from = place.begin + place.length;
            } else {
                appendGlobalId(out, std::string_view(m_text).substr(place.begin, kGlobalIdLength), copy);
                from = place.begin + kGlobalIdLength;
            }
        }
        out.append(m_text, from, m_end - from);
    }

private:
    struct Place {
        std::size_t begin;
        std::size_t length;
        std::uint64_t name; ///< 0 where a GlobalId stands
    };

    /// Where `statement` begins outside of texts and comments.
    std::size_t find(std::string_view statement, std::size_t at) const {
        while (at < m_text.size() && m_text.compare(at, statement.size(), statement) != 0) {
            at = behind(at);
        }
        if (at >= m_text.size()) {
            throw std::runtime_error("has no " + std::string(statement));
        }
        return at;
    }

    /// Behind the text, the comment or the character at `at`.
    std::size_t behind(std::size_t at) const {
        std::size_t end = at + 1;
        if (m_text[at] == '\'') {
            end = m_text.find('\'', at + 1);
        } else if (m_text.compare(at, 2, "/*") == 0) {
            end = m_text.find("*/", at + 2);
        } else {
            return end;
        }
        return end == std::string::npos ? m_text.size() : end + 1;
    }

    std::size_t note(std::size_t at) {
        const std::size_t end = behind(at);
        if (m_text[at] == '#' && isDigit(m_text[at + 1])) {
            Place place{at + 1, 0, 0};
            const char* const digits = m_text.data() + at + 1;
            const char* const stop = std::from_chars(digits, m_text.data() + m_text.size(), place.name).ptr;
            place.length = static_cast<std::size_t>(stop - digits);
            m_highest = std::max(m_highest, place.name);
            m_places.push_back(place);
            return place.begin + place.length;
        }
        // Where the first attribute of a record looks like a GlobalId it is taken for one.
        const bool isFirst =
            m_text[at] == '\'' && at >= 2 && m_text[at - 1] == '(' && m_text[at - 2] != '(' && m_text[at - 2] != ',';
        if (isFirst && isGlobalId(std::string_view(m_text).substr(at + 1, end - at - 2))) {
            m_places.push_back({at + 1, kGlobalIdLength, 0});
        }
        return end;
    }

    /// Counts digits 1 to 4 on by the number of the copy, so that different ones stay different.
    static void appendGlobalId(std::string& out, std::string_view id, std::uint64_t copy) {
        std::string changed(id);
        for (std::size_t digit = 4; digit >= 1; --digit) {
            copy += kGlobalIdDigits.find(changed[digit]);
            changed[digit] = kGlobalIdDigits[copy % kGlobalIdDigits.size()];
            copy /= kGlobalIdDigits.size();
        }
        out += changed;
    }

    std::string m_text;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::uint64_t m_highest = 0;
    std::vector<Place> m_places;
};

std::vector<Records> recordsOf(const std::vector<fs::path>& files) {
    std::vector<Records> all;
    for (const fs::path& file : files) {
        try {
            all.emplace_back(file);
        } catch (const std::runtime_error& failure) {
            throw std::runtime_error(file.string() + ' ' + failure.what());
        }
    }
    return all;
}

} // namespace

void writeJoinedFile(const std::vector<fs::path>& files, std::uint64_t bytes, const fs::path& target) {
    const std::vector<Records> all = recordsOf(files);
    std::ofstream out(target, std::ios::binary);
    std::string piece(all.front().header());
    std::uint64_t written = 0;
    std::uint64_t shift = 0;
    std::size_t leftOut = 0; // in a row
    for (std::uint64_t copy = 0; leftOut < all.size(); ++copy) {
        const Records& records = all[copy % all.size()];
        if (written + records.size() > bytes && written != 0) {
            ++leftOut;
            continue;
        }
        leftOut = 0;
        records.append(piece, shift, copy);
        shift += records.highestName();
        written += piece.size();
        out << piece;
        piece.clear();
    }
    out << "ENDSEC;\nEND-ISO-10303-21;\n";
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + target.string());
    }
}
