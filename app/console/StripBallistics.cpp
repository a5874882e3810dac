#include "app/console/StripBallistics.h"

#include <algorithm>
#include <cmath>

namespace orvanta {
namespace {

double shareOfStrip(double level) noexcept {
    return level > 0.0 ? std::min(level, StripBallistics::top) / StripBallistics::top : 0.0;
}

double moved(double value, double target, double dt, double timeConstant) noexcept {
    return value + (target - value) * (1.0 - std::exp(-dt / timeConstant));
}

} // namespace

void StripBallistics::tick(Seconds now, double peak, double rms) noexcept {
    const double dt = std::clamp(now - lastFrameTime_, Seconds(0.0), longestTick).count();
    lastFrameTime_ = now;
    if (!hasBegun_) {
        hasBegun_ = true;
        return;
    }
    const double target = shareOfStrip(peak);
    smoothLevel_ = moved(smoothLevel_, target, dt, smoothLevel_ < target ? attack : release);
    smoothRms_ = moved(smoothRms_, shareOfStrip(rms), dt, rmsTime);
    movePeak(now, dt);
}

void StripBallistics::movePeak(Seconds now, double dt) noexcept {
    if (peakLevel_ < smoothLevel_) {
        peakLevel_ = smoothLevel_;
        peakHoldTime_ = now;
    } else if (now - peakHoldTime_ > peakHold) {
        peakLevel_ = moved(peakLevel_, smoothLevel_, dt, peakFall);
    }
    // However it came there: a level never quite dies away, and would lift the line again and
    // again.
    if (peakLevel_ < peakFloor)
        peakLevel_ = 0.0;
}

bool StripBallistics::isAtRest() const noexcept {
    return smoothLevel_ < restLevel && smoothRms_ < restLevel && peakLevel_ == 0.0;
}

} // namespace orvanta
