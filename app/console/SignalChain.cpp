#include "app/console/SignalChain.h"

#include "app/console/ConsoleText.h"
#include "app/popover/CompressorField.h"
#include "app/popover/RowText.h"

#include <fmt/format.h>

#include <cmath>

namespace orvanta {
namespace {

/// Nearer to the middle a balance does nothing worth showing.
constexpr float kCentre = 0.05F;
/// Below it a volume is told as none.
constexpr float kInaudible = 0.005F;
constexpr float kUnityWidth = 1.0F;
constexpr float kNoticeable = 0.01F;

constexpr std::string_view kPrimary = "text1";
constexpr std::string_view kSecondary = "text2";
constexpr double kLit = 0.7;
constexpr double kUnlit = 0.2;

std::string gateValue(const ChannelState& channel) {
    if (!channel.row.isGateEnabled)
        return "Bypassed";
    return fmt::format("Threshold: {}", rowText::thresholdReadOut(channel.row.gateThreshold));
}

std::string equalizerValue(const EQPreset& preset) {
    return preset.isFlat() ? "Flat (off)" : std::string(consoleText::equalizerPresetName(preset));
}

std::string compressorValue(const CompressorPreset& preset) {
    return preset.isOff() ? "Off" : std::string(compressorPresetName(preset));
}

std::string chainVolume(float volume) {
    return consoleText::volumeReadOut(volume < kInaudible ? 0.0F : volume);
}

SignalFlowStep litStep(std::string_view label, std::string_view color, bool isLit) {
    return {label, isLit ? color : kSecondary, isLit ? kLit : kUnlit};
}

} // namespace

std::vector<SignalStage> signalChain(const ChannelState& channel, std::string_view outputName) {
    const RowState& row = channel.row;
    return {
        {"Input", true, "48 kHz Stereo"},
        {"Noise Gate", row.isGateEnabled, gateValue(channel)},
        {"EQ", !row.eq.isFlat(), equalizerValue(row.eq)},
        {"Compressor", !row.compressor.isOff(), compressorValue(row.compressor)},
        {"Pan", std::abs(row.balance) > kCentre, consoleText::panReadOut(row.balance)},
        {"Volume", true, chainVolume(row.volume)},
        {"Output", true, std::string(outputName)},
    };
}

std::vector<SignalFlowStep> signalFlow(const ChannelState& channel) {
    const RowState& row = channel.row;
    std::vector<SignalFlowStep> steps{{"In", kPrimary}};
    if (channel.isNormalizing)
        steps.push_back({"Norm", "green"});
    steps.push_back(litStep("Gate", "green", row.isGateEnabled));
    steps.push_back(litStep("EQ", "accent", !row.eq.isFlat()));
    steps.push_back(litStep("Comp", "warmOrange", !row.compressor.isOff()));
    if (channel.isLimiting)
        steps.push_back({"Lim", "red"});
    if (std::abs(channel.stereoWidth - kUnityWidth) > kNoticeable)
        steps.push_back({"Wide", "cyan"});
    if (channel.crossfeed > kNoticeable)
        steps.push_back({"XFed", "pink"});
    steps.push_back({"Out", kPrimary});
    return steps;
}

} // namespace orvanta
