#include "platform/embedded/cycle/ChannelMix.h"

#include <algorithm>

namespace orvanta::embedded {

namespace {

constexpr float kMinus3dB = 0.70710678F;

} // namespace

StereoFrame stereoFrame(const float* frame, std::size_t channels) noexcept {
    if (channels == 0)
        return {};
    if (channels == 1)
        return {frame[0], frame[0]};
    StereoFrame folded{frame[0], frame[1]};
    for (std::size_t channel = 2; channel < channels; ++channel) {
        folded.left += kMinus3dB * frame[channel];
        folded.right += kMinus3dB * frame[channel];
    }
    return folded;
}

void addStereoMixdown(std::span<const float> program, std::size_t programChannels,
                      std::span<float> stereo) noexcept {
    addToDevice(program, programChannels, stereo, 2);
}

void addToDevice(std::span<const float> program, std::size_t programChannels,
                 std::span<float> device, std::size_t deviceChannels) noexcept {
    if (programChannels == 0 || deviceChannels == 0)
        return;
    const bool folds = deviceChannels <= 2 || programChannels == 1;
    const std::size_t shared = std::min(programChannels, deviceChannels);
    const std::size_t frames =
        std::min(program.size() / programChannels, device.size() / deviceChannels);
    for (std::size_t index = 0; index < frames; ++index) {
        const float* from = program.data() + index * programChannels;
        float* to = device.data() + index * deviceChannels;
        if (!folds) {
            for (std::size_t channel = 0; channel < shared; ++channel)
                to[channel] += from[channel];
            continue;
        }
        const StereoFrame folded = stereoFrame(from, programChannels);
        if (deviceChannels == 1) {
            to[0] += 0.5F * (folded.left + folded.right);
        } else {
            to[0] += folded.left;
            to[1] += folded.right;
        }
    }
}

} // namespace orvanta::embedded
