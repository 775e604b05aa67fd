#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The page that kpifc report writes.
namespace kpifc::page {

/// Appends a text as HTML shows it, also within attributes in quotes. Bytes that are no text, and control characters,
/// become U+FFFD.
void appendHtml(std::string& out, std::string_view text);
std::string html(std::string_view text);

/// A script element that holds JSON, whatever the texts in it say.
void appendJsonScript(std::string& out, std::string_view id, std::string_view json);

/// The name of an instance as JSON: a number, or a text where scripts have no such number.
void appendName(std::string& json, std::uint64_t instanceName);

/// Where an instance is told of: the fragment of the page's address, "#i15".
std::string addressOf(std::uint64_t instanceName);

} // namespace kpifc::page
