#pragma once

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace orvanta {

/// Whole names, in their case, of processes that nobody wants to mix: daemons and agents of the
/// system, parts of its desktop, and the programs of this project.
const std::set<std::string, std::less<>>& excludedProcessNames();

/// What the names of helper processes hold, in the order in which it is looked for.
inline constexpr std::array<std::string_view, 7> helperNameMarkers{
    "Helper",     "GPU Process", "Renderer",   "Graphics and Media",
    "Networking", "Plugin",      "Web Content"};

bool hasHelperNameMarker(std::string_view name);

/// The name without any of the markers, without blanks at its ends.
std::string withoutHelperNameMarkers(std::string name);

} // namespace orvanta
