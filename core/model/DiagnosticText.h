#pragma once

#include "core/discovery/AudioApp.h"
#include "core/model/PIDMap.h"

#include <string>
#include <vector>

/// Values as diagnostic lines show them.
namespace orvanta {

/// The shortest text that reads back as this value, with at least one place: "1.0", "0.35".
[[nodiscard]] std::string diagnosticText(float value);

/// "[1, 2, 3]", ascending.
[[nodiscard]] std::string diagnosticText(const PIDSet& pids);

/// "Music:1,Video:2".
[[nodiscard]] std::string diagnosticText(const std::vector<AudioApp>& apps);

} // namespace orvanta
