#pragma once

#include <cstddef>
#include <vector>

namespace orvanta::compare {

inline constexpr double kSampleRate = 48000.0;

/// A stereo signal, in both layouts.
class Signal {
public:
    Signal(std::vector<float> left, std::vector<float> right);

    [[nodiscard]] std::size_t frames() const noexcept { return left_.size(); }

    [[nodiscard]] const float* left() const noexcept { return left_.data(); }

    [[nodiscard]] const float* right() const noexcept { return right_.data(); }

    [[nodiscard]] const float* interleaved() const noexcept { return interleaved_.data(); }

    /// Of both channels.
    [[nodiscard]] double peak() const;
    [[nodiscard]] double rms() const;

private:
    std::vector<float> left_;
    std::vector<float> right_;
    std::vector<float> interleaved_;
};

[[nodiscard]] double decibels(double ratio);
[[nodiscard]] double ratioOf(double decibels);

/// What everything is measured with: noise that falls towards the treble as music does and changes
/// its loudness 20 times a second, so that compressors and limiters are always on their way.
[[nodiscard]] Signal music(std::size_t frames, double rms);

[[nodiscard]] Signal sine(std::size_t frames, double frequency, double leftPeak, double rightPeak);
/// One sample in both channels, then silence.
[[nodiscard]] Signal impulse(std::size_t frames, float height);

} // namespace orvanta::compare
