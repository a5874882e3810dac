#include "cli/VolumeRide.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvanta::cli {
namespace {

template <typename Number>
bool readNumber(std::string_view text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(number);
}

} // namespace

std::string readVolumePoint(const std::string& text, VolumePoint& point) {
    const std::size_t colon = text.find(':');
    VolumePoint read;
    if (colon == std::string::npos ||
        !readNumber(std::string_view(text).substr(0, colon), read.seconds) ||
        !readNumber(std::string_view(text).substr(colon + 1), read.volume))
        return "'" + text + "' is not SECONDS:VOLUME";
    if (read.seconds < 0.0 || read.volume < 0.0F || read.volume > 2.0F)
        return "'" + text + "' needs a time of 0 or more and a volume from 0 to 2";
    point = read;
    return {};
}

VolumeRide::VolumeRide(std::vector<VolumePoint> points) : points_(std::move(points)) {
    std::stable_sort(points_.begin(), points_.end(),
                     [](const VolumePoint& left, const VolumePoint& right) {
                         return left.seconds < right.seconds;
                     });
}

float VolumeRide::volumeAt(double seconds) const {
    const auto next = std::upper_bound(
        points_.begin(), points_.end(), seconds,
        [](double time, const VolumePoint& point) { return time < point.seconds; });
    if (next == points_.begin())
        return next->volume;
    const VolumePoint& last = *std::prev(next);
    if (next == points_.end())
        return last.volume;
    const double share = (seconds - last.seconds) / (next->seconds - last.seconds);
    return std::lerp(last.volume, next->volume, static_cast<float>(share));
}

} // namespace orvanta::cli
