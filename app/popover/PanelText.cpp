#include "app/popover/PanelText.h"

#include <fmt/format.h>

#include <cmath>

namespace orvanta::panelText {

std::string appCount(std::size_t count) {
    return fmt::format("{} app{}", count, count == 1 ? "" : "s");
}

std::string tappedCount(std::size_t count) {
    return fmt::format("{} tapped", count);
}

std::string playingCount(std::size_t count) {
    return fmt::format("{} playing", count);
}

std::string_view autoTapSymbol(bool isEnabled) noexcept {
    return isEnabled ? "bolt.circle.fill" : "bolt.circle";
}

std::string_view autoTapHint(bool isEnabled) noexcept {
    return isEnabled ? "Double tap to disable automatic audio tapping"
                     : "Double tap to enable automatic audio tapping";
}

std::string themeHelp(std::string_view themeName) {
    return fmt::format("Theme: {} — click to switch", themeName);
}

std::string_view masterSymbol(float volume) noexcept {
    if (volume == 0.0F)
        return "speaker.slash.fill";
    if (volume < 0.33F)
        return "speaker.wave.1.fill";
    return volume < 0.66F ? "speaker.wave.2.fill" : "speaker.wave.3.fill";
}

int percent(float value) noexcept {
    const float hundredths = value * 100.0F;
    return std::abs(hundredths) < 1e6F ? static_cast<int>(hundredths) : 0;
}

std::string percentReadOut(float value) {
    return fmt::format("{}%", percent(value));
}

std::string masterVolumeValue(float volume) {
    return fmt::format("{} percent", percent(volume));
}

std::string_view muteAllSymbol(bool isMasterMuted) noexcept {
    return isMasterMuted ? "speaker.slash.fill" : "speaker.wave.2.fill";
}

std::string_view muteAllText(bool isMasterMuted) noexcept {
    return isMasterMuted ? "Unmute All" : "Mute All";
}

std::string_view muteAllLabel(bool isMasterMuted) noexcept {
    return isMasterMuted ? "Unmute all" : "Mute all";
}

std::string_view launchAtLoginSymbol(bool isEnabled) noexcept {
    return isEnabled ? "checkmark.circle.fill" : "circle";
}

std::string version(std::string_view shortVersion) {
    return fmt::format("v{}", shortVersion);
}

} // namespace orvanta::panelText
