#include "app/popover/MeterLayout.h"

#include "app/popover/LevelColors.h"

#include <algorithm>
#include <cmath>

namespace orvanta {

double onScreenPixel(double length, double ratio) noexcept {
    return std::round(length * ratio) / ratio;
}

MeterLayout meterLayout(double width, double fill, double ratio) noexcept {
    MeterLayout layout;
    layout.yellowStart = onScreenPixel(width * kGreenZone, ratio);
    layout.redStart = onScreenPixel(width * (kGreenZone + kYellowZone), ratio);
    // Never nothing, however coarse the screen.
    layout.line = std::max(onScreenPixel(1.0, ratio), 1.0 / ratio);
    const double step = fill / static_cast<double>(MeterLayout::stepCount);
    for (std::size_t index = 0; index < MeterLayout::stepCount; ++index)
        layout.stepEnds.at(index) = onScreenPixel(step * static_cast<double>(index + 1), ratio);
    return layout;
}

} // namespace orvanta
