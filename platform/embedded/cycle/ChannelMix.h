#pragma once

#include <cstddef>
#include <span>

/// How sound of one number of channels becomes sound of another. All spans are interleaved and
/// hold the same number of frames.
namespace orvanta::embedded {

/// A frame as two channels: one channel goes to both sides, two stay as they are, each further one
/// goes to both sides at -3 dB.
struct StereoFrame {
    float left = 0;
    float right = 0;
};

StereoFrame stereoFrame(const float* frame, std::size_t channels) noexcept;

/// Adds the stereo form of a program to a stereo block.
void addStereoMixdown(std::span<const float> program, std::size_t programChannels,
                      std::span<float> stereo) noexcept;

/// Adds what a program plays to what a device plays. A device of one channel gets the mean of the
/// stereo form, one of two the stereo form. A device of more gets channel by channel, those it
/// lacks being lost, and one channel on its first two.
void addToDevice(std::span<const float> program, std::size_t programChannels,
                 std::span<float> device, std::size_t deviceChannels) noexcept;

} // namespace orvanta::embedded
