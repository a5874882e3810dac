#pragma once

#include "core/dsp/EQBand.h"

#include <array>
#include <span>

namespace orvanta {

/// The response of ten gains as the console draws it: a bell for each band over the octaves. A
/// picture that the hand can bend, not a measurement; what the filters do, the panel's line shows.
/// Gains are in dB, frequencies in Hz. A gain that is no finite number counts as flat.
struct EQCurve {
    struct Point {
        double x = 0.0;
        double y = 0.0;

        friend bool operator==(const Point&, const Point&) = default;
    };

    static constexpr int numPoints = 200;
    /// Ends of the axis, which is logarithmic.
    static constexpr double minFreq = 20.0;
    static constexpr double maxFreq = 20000.0;
    /// Lower and upper edge of the drawing.
    static constexpr double minDB = -14.0;
    static constexpr double maxDB = 14.0;
    /// How far a drag goes up and down: less than the drawing does, so that a handle stays off its
    /// edges.
    static constexpr double dragLimitDB = 12.0;
    /// Left free around the curve on all sides of its canvas.
    static constexpr double padding = 12.0;

    /// Of the drawing inside the padding. Its left upper corner is at 0, 0.
    double width = 0.0;
    double height = 0.0;

    /// That on a canvas of this size.
    [[nodiscard]] static EQCurve onCanvas(double canvasWidth, double canvasHeight) noexcept;

    [[nodiscard]] double x(double frequency) const noexcept;

    /// Within the drawing also for gains beyond it.
    [[nodiscard]] double y(double gain) const noexcept;

    /// What a drag to this height sets: any gain up to the limit, not only whole ones. 0 in a
    /// drawing without height.
    [[nodiscard]] double gainAt(double y) const noexcept;

    /// The line from `minFreq` to `maxFreq`.
    [[nodiscard]] std::array<Point, numPoints> points(std::span<const double> gains) const noexcept;

    /// The bells of all bands together, `minDB` to `maxDB`. Bands within 0.05 dB of flat are left
    /// out, and so is what is beyond the tenth.
    [[nodiscard]] static double responseDB(std::span<const double> gains,
                                           double frequency) noexcept;

    /// Whether the band has a part in the response.
    [[nodiscard]] static bool isActive(double gain) noexcept;
};

} // namespace orvanta
