#pragma once

#include <array>
#include <cstddef>

namespace orvanta {

/// Where the parts of a row's meter lie along it. In logical pixels, every bound a whole number
/// of the screen's pixels from the meter's left edge: a bound between two pixels is a smear.
struct MeterLayout {
    /// A fill is flat colours, which come out of the dark in steps too small to see.
    static constexpr std::size_t stepCount = 12;

    double yellowStart = 0.0;
    double redStart = 0.0;
    /// Thickness of what parts the zones, and of the frame round the fill.
    double line = 0.0;
    /// Where each step of the fill ends; the first begins at 0.
    std::array<double, stepCount> stepEnds{};

    friend bool operator==(const MeterLayout&, const MeterLayout&) = default;
};

/// `length` on the nearest pixel of a screen that has `ratio` of them for a logical one.
[[nodiscard]] double onScreenPixel(double length, double ratio) noexcept;

/// Of a meter of this width that is filled up to `fill`.
[[nodiscard]] MeterLayout meterLayout(double width, double fill, double ratio) noexcept;

} // namespace orvanta
