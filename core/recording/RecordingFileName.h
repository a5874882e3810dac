#pragma once

#include "core/platform/WallClock.h"
#include "core/recording/RecordingFormat.h"

#include <string>
#include <string_view>

namespace orvanta {

/// What of a program's name can stand in a file name: Unicode letters, marks and numbers, "-", "_"
/// and spaces; every other character becomes "-". ".." goes first, from left to right, and "-" and
/// spaces go from both ends. Malformed UTF-8 counts as other characters. May be empty.
[[nodiscard]] std::string cleanedForFileName(std::string_view appName);

/// "{cleaned name}_{yyyy-MM-dd_HH-mm-ss}.{extension}", in local time.
[[nodiscard]] std::string recordingFileName(std::string_view appName, WallTime time,
                                            RecordingFormat format);

} // namespace orvanta
