#pragma once

#include <string>
#include <string_view>

namespace orvanta {

/// Tells which applications are tapped.
struct ListAudioAppsIntent {
    static constexpr std::string_view title = "List Audio Apps";

    /// Answers with their names, by process id. Says "playing" of all of them, whether they sound
    /// or not: what is tapped is what the user has in hand. On the main thread.
    [[nodiscard]] static std::string perform();
};

} // namespace orvanta
