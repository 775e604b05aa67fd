#pragma once

#include <map>
#include <string_view>

namespace kpifc::page {

/// The files of the page that stand beside this one, by their names, compiled in by Embed.cmake: page.html, with holes
/// for values and for the other files.
const std::map<std::string_view, std::string_view>& pageFiles();

} // namespace kpifc::page
