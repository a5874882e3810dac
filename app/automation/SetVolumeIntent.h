#pragma once

#include "app/automation/IntentParameter.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orvanta {

/// Sets the volume of the system's output.
struct SetVolumeIntent {
    static constexpr std::string_view title = "Set Volume";
    static constexpr IntentParameter volumeParameter{
        .name = "volume",
        .title = "Volume",
        .description = "Volume level as percentage (0-200)",
        .defaultValue = 100,
        .controlStyle = IntentControlStyle::stepper,
    };

    /// Percent; any number.
    std::int64_t volume = volumeParameter.defaultValue;

    /// Sets what lies within 0 to 200 percent, and answers with the number as it was given. The
    /// upper half is automation's alone; the panel's slider ends at 100. On the main thread.
    [[nodiscard]] std::string perform() const;
};

} // namespace orvanta
