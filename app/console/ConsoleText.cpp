#include "app/console/ConsoleText.h"

#include <fmt/format.h>

#include <cmath>

namespace orvanta::consoleText {
namespace {

constexpr std::string_view kSilence = "-∞ dB";
/// Below it a level is told as none.
constexpr float kQuietest = 0.001F;
constexpr float kHot = 0.9F;
constexpr float kCentre = 0.05F;
constexpr float kHardPan = 50.0F;
constexpr float kMono = 0.05F;

float decibels(float value) {
    return 20.0F * std::log10(value);
}

std::string roundedPercent(float value) {
    return fmt::format("{:.0f}%", value * 100.0F);
}

} // namespace

std::string recordingBadge(std::size_t count) {
    return fmt::format("Recording {} channel{}", count, count > 1 ? "s" : "");
}

std::string recordingCount(std::size_t count) {
    return fmt::format("{} REC", count);
}

std::string channelCount(std::size_t count) {
    return fmt::format("{} Channel{}", count, count == 1 ? "" : "s");
}

std::string masterReadOut(float volume) {
    return roundedPercent(volume);
}

std::string levelReadOut(float level, bool isMuted) {
    if (isMuted)
        return "MUTE";
    if (!(level >= kQuietest))
        return std::string(kSilence);
    return fmt::format("{:.0f} dB", decibels(level));
}

bool isLevelHot(float level) noexcept {
    return level > kHot;
}

std::string panReadOut(float balance) {
    const float distance = std::abs(balance);
    if (!(distance >= kCentre))
        return "Center";
    return fmt::format("{}{}", balance < 0.0F ? 'L' : 'R',
                       static_cast<int>(std::fmin(distance, 1.0F) * kHardPan));
}

std::string volumeReadOut(float volume) {
    if (!(volume > 0.0F))
        return std::string(kSilence);
    return fmt::format("{:+.1f} dB", decibels(volume));
}

std::string volumeLine(float volume, bool isMuted) {
    return fmt::format("Volume: {}", volumeReadOut(isMuted ? 0.0F : volume));
}

std::string panLine(float balance) {
    return fmt::format("Pan: {}", panReadOut(balance));
}

std::string_view muteHelp(bool isMuted) noexcept {
    return isMuted ? "Unmute this channel" : "Mute this channel";
}

std::string_view soloHelp(bool isSoloed) noexcept {
    return isSoloed ? "Un-solo this channel" : "Solo — listen to only this channel";
}

std::string soloLabel(std::string_view app, bool isSoloed) {
    return fmt::format("{} {}", isSoloed ? "Un-solo" : "Solo", app);
}

std::string_view recordHelp(bool isRecording) noexcept {
    return isRecording ? "Stop recording this channel" : "Record this channel's audio";
}

std::string_view gateState(bool isEnabled) noexcept {
    return isEnabled ? "Active" : "Bypassed";
}

std::string_view gateIndicator(bool isOpen) noexcept {
    return isOpen ? "OPEN" : "CLOSED";
}

std::string thresholdReadOut(float threshold) {
    return fmt::format("{:.0f} dB", threshold);
}

std::string_view equalizerLine(const EQPreset& preset) noexcept {
    if (preset.isFlat())
        return "";
    return preset.matchedPresetName().value_or("Custom EQ");
}

std::string_view equalizerPresetName(const EQPreset& preset) noexcept {
    if (preset.isFlat())
        return "Flat";
    return preset.matchedPresetName().value_or("Custom");
}

std::string gainReadOut(float gain) {
    return fmt::format("{:+.0f} dB", gain);
}

std::string normalizationReadOut(float gainDB) {
    return fmt::format("{:+.1f} dB", gainDB);
}

std::string widthReadOut(float width) {
    return width < kMono ? "Mono" : roundedPercent(width);
}

std::string crossfeedReadOut(float amount) {
    return roundedPercent(amount);
}

std::string profileHelp(std::string_view profile, bool isActive) {
    return isActive ? "Click to deactivate" : fmt::format("Click to apply \"{}\"", profile);
}

std::string updateText(std::string_view profile) {
    return fmt::format("Update \"{}\"", profile);
}

std::string updateHelp(std::string_view profile) {
    return fmt::format("Overwrite \"{}\" with current mixer settings", profile);
}

} // namespace orvanta::consoleText
