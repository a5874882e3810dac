#pragma once

#include <array>

namespace orvanta {

/// How high the bars of the menu bar's visualiser stand: up at once, down smoothly. It knows
/// nothing but its last frame.
class VisualizerBars {
public:
    static constexpr int barCount = 5;
    using Heights = std::array<double, barCount>;

    /// How high each bar goes at full level.
    static constexpr Heights weights{0.7, 1.0, 0.85, 0.95, 0.6};

    /// Whether a level, 1 at full scale, is worth a rise. What is no finite number is not.
    [[nodiscard]] static bool isAudible(float level) noexcept;

    /// A frame with sound.
    void follow(float level) noexcept;

    /// A frame without. What was heard last stays.
    void fade() noexcept;

    /// Whether all have come down.
    [[nodiscard]] bool areDown() const noexcept;

    /// 0 to 1.
    [[nodiscard]] const Heights& heights() const noexcept { return heights_; }

    /// The held peak, beyond 1 after a level beyond it.
    [[nodiscard]] float previousLevel() const noexcept { return previousLevel_; }

private:
    Heights heights_{};
    float previousLevel_ = 0.0F;
};

} // namespace orvanta
