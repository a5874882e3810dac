#include "app/automation/SetVolumeIntent.h"

#include "app/automation/OrvantaIntentBridge.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta {
namespace {

constexpr std::int64_t kLowestPercent = 0;
constexpr std::int64_t kHighestPercent = 200;

} // namespace

std::string SetVolumeIntent::perform() const {
    const auto percent = static_cast<float>(std::clamp(volume, kLowestPercent, kHighestPercent));
    if (const auto model = OrvantaIntentBridge::sharedModel())
        model->setMasterVolume(percent / 100.0F);
    return fmt::format("Volume set to {}%", volume);
}

} // namespace orvanta
