#pragma once

#include <string>
#include <vector>

namespace orvanta::cli {

/// A volume and the time since the tap's start at which it is reached.
struct VolumePoint {
    double seconds = 0.0;
    /// Linear, 0 to 2.
    float volume = 1.0F;

    friend bool operator==(const VolumePoint&, const VolumePoint&) = default;
};

/// Reads "SECONDS:VOLUME"; an empty text means the point is right, any other says what is wrong.
std::string readVolumePoint(const std::string& text, VolumePoint& point);

/// A volume that moves from point to point in straight lines, stays at the first one before it and
/// at the last one after it.
class VolumeRide {
public:
    /// In any order. Of points at one time the last given counts from then on.
    explicit VolumeRide(std::vector<VolumePoint> points);

    [[nodiscard]] bool isEmpty() const { return points_.empty(); }

    /// The ride must not be empty.
    [[nodiscard]] float volumeAt(double seconds) const;

private:
    std::vector<VolumePoint> points_;
};

} // namespace orvanta::cli
