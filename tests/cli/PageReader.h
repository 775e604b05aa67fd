#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What kpifc report has written, taken apart as its script does (report/PageData.h).
class PageReader {
public:
    /// Fails the test where the page has not the elements that it is to have.
    explicit PageReader(std::string page);

    const std::string& text() const { return m_page; }
    bool has(std::string_view piece) const { return m_page.find(piece) != std::string::npos; }
    const nlohmann::json& index() const { return m_index; }
    const nlohmann::json& properties() const { return m_properties; }
    std::size_t count() const { return m_index["ids"].size(); }
    /// Values and links of an instance.
    const nlohmann::json& detail(std::size_t place) const;
    /// The place of an instance; fails the test where the page has none of that name.
    std::size_t placeOf(std::uint64_t instanceName) const;

    /// What is wrong with it by itself, a line each: references that lead nowhere, links that have no way back.
    std::string faults() const;

private:
    std::string m_page;
    nlohmann::json m_index;
    nlohmann::json m_properties;
    nlohmann::json m_details;
};
