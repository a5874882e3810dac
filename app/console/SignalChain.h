#pragma once

#include "app/console/ChannelState.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvanta {

/// A stage of a channel: what it is called, whether it does anything, and what it is set to.
struct SignalStage {
    std::string_view title;
    bool isActive = false;
    std::string value;

    friend bool operator==(const SignalStage&, const SignalStage&) = default;
};

/// From the program to its device. `outputName` is that of the device.
[[nodiscard]] std::vector<SignalStage> signalChain(const ChannelState& channel,
                                                   std::string_view outputName);

/// A step of the line under the strips.
struct SignalFlowStep {
    std::string_view label;
    std::string_view color; ///< a colour of the theme
    double opacity = 1.0;

    friend bool operator==(const SignalFlowStep&, const SignalFlowStep&) = default;
};

/// From left to right: an order to read, not that in which the sound is processed, where the gate
/// comes after the crossfeed.
[[nodiscard]] std::vector<SignalFlowStep> signalFlow(const ChannelState& channel);

} // namespace orvanta
