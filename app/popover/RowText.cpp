#include "app/popover/RowText.h"

#include "app/popover/PanelText.h"

#include <fmt/format.h>

#include <cmath>

namespace orvanta::rowText {
namespace {

/// Nearer to the middle a balance is told as none.
constexpr float kCenter = 0.05F;

/// Whole dB, cut off towards 0.
int wholeDecibels(float value) noexcept {
    return std::abs(value) < 1e6F ? static_cast<int>(value) : 0;
}

} // namespace

std::string_view tapHelp(bool isTapped) noexcept {
    return isTapped ? "Remove audio tap" : "Tap this app's audio";
}

std::string tapLabel(std::string_view app, bool isTapped) {
    return isTapped ? fmt::format("Remove tap from {}", app) : fmt::format("Tap {} audio", app);
}

std::string_view tapHint(bool isTapped) noexcept {
    return isTapped ? "Double tap to stop controlling this app's audio"
                    : "Double tap to control this app's volume and effects";
}

std::string_view recordHelp(bool isRecording) noexcept {
    return isRecording ? "Stop recording" : "Record audio";
}

std::string recordLabel(std::string_view app, bool isRecording) {
    return isRecording ? fmt::format("Stop recording {}", app)
                       : fmt::format("Record {} audio", app);
}

std::string recordValue(bool isRecording, double seconds) {
    return isRecording ? "Recording, " + elapsedTime(seconds) : "Not recording";
}

std::string elapsedTime(double seconds) {
    const auto whole = seconds > 0.0 && seconds < 1e9 ? static_cast<int>(seconds) : 0;
    return fmt::format("{}:{:02}", whole / 60, whole % 60);
}

std::string volumeLabel(std::string_view app) {
    return fmt::format("{} volume", app);
}

std::string volumeValue(float volume) {
    return fmt::format("{} percent{}", panelText::percent(volume),
                       volume > 1.0F ? ", boosted" : "");
}

std::string_view muteSymbol(bool isMuted) noexcept {
    return isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill";
}

std::string_view muteHelp(bool isMuted) noexcept {
    return isMuted ? "Unmute" : "Mute";
}

std::string muteLabel(std::string_view app, bool isMuted) {
    return fmt::format("{} {}", muteHelp(isMuted), app);
}

std::string outputLabel(std::string_view app) {
    return fmt::format("Output device for {}", app);
}

std::string equalizerLabel(std::string_view app) {
    return fmt::format("Equalizer for {}", app);
}

std::string_view equalizerValue(const EQPreset& preset) noexcept {
    return preset.isFlat() ? "Flat" : "Active";
}

std::string_view expansionHint(bool isExpanded) noexcept {
    return isExpanded ? "Double tap to collapse" : "Double tap to expand";
}

std::string_view modeText(bool isTenBand) noexcept {
    return isTenBand ? "10-Band" : "Simple";
}

std::string_view modeLabel(bool isTenBand) noexcept {
    return isTenBand ? "Switch to simple EQ" : "Switch to 10-band EQ";
}

std::string_view simpleBandText(EQSimpleBand band) noexcept {
    switch (band) {
    case EQSimpleBand::bass:
        return "Bass";
    case EQSimpleBand::mid:
        return "Mid";
    case EQSimpleBand::treble:
        break;
    }
    return "Treble";
}

std::string bandLabel(std::size_t band, std::string_view app) {
    return fmt::format("{} Hz EQ for {}", kEQLabels.at(band), app);
}

std::string gainReadOut(float gain) {
    return fmt::format("{:+.0f}", gain);
}

std::string gainValue(float gain) {
    return fmt::format("{:+.0f} decibels", gain);
}

bool isGainLit(float gain) noexcept {
    return std::abs(gain) > 0.5F;
}

std::string balanceLabel(std::string_view app) {
    return fmt::format("Stereo balance for {}", app);
}

std::string balanceValue(float balance) {
    if (!(std::abs(balance) > kCenter))
        return "Center";
    return fmt::format("{} percent {}", panelText::percent(std::abs(balance)),
                       balance < 0.0F ? "left" : "right");
}

std::string balanceReadOut(float balance) {
    if (!(std::abs(balance) > kCenter))
        return "";
    return fmt::format("{}% {}", panelText::percent(std::abs(balance)),
                       balance < 0.0F ? "Left" : "Right");
}

bool isLeftLit(float balance) noexcept {
    return balance < -0.1F;
}

bool isRightLit(float balance) noexcept {
    return balance > kCenter;
}

std::string gateLabel(std::string_view app) {
    return fmt::format("Noise gate for {}", app);
}

std::string_view gateHelp(bool isOpen) noexcept {
    return isOpen ? "Gate open (audio passing)" : "Gate closed (silencing)";
}

std::string thresholdReadOut(float threshold) {
    return fmt::format("{} dB", wholeDecibels(threshold));
}

std::string thresholdValue(float threshold) {
    return fmt::format("{} decibels", wholeDecibels(threshold));
}

std::string compressorLabel(std::string_view app) {
    return fmt::format("Compressor preset for {}", app);
}

} // namespace orvanta::rowText
