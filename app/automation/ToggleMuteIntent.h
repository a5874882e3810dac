#pragma once

#include <string>
#include <string_view>

namespace orvanta {

/// Mutes everything, or ends that.
struct ToggleMuteIntent {
    static constexpr std::string_view title = "Toggle Mute";

    /// Answers whether everything is muted now. On the main thread.
    [[nodiscard]] static std::string perform();
};

} // namespace orvanta
