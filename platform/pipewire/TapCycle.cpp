#include "platform/pipewire/TapCycle.h"

#include "core/platform/RealTimeSection.h"

#include <algorithm>

namespace orvanta::pipewire {
namespace {

using BufferPair = std::array<AudioBuffer, kChannels>;

BufferPair makeBuffers(const std::array<float*, kChannels>& channels,
                       std::uint32_t frames) noexcept {
    BufferPair buffers{};
    for (std::size_t channel = 0; channel < kChannels; ++channel)
        buffers[channel] = {1, frames * static_cast<std::uint32_t>(sizeof(float)),
                            channels[channel]};
    return buffers;
}

} // namespace

void foldToMono(float* left, float* right, std::uint32_t frames) noexcept {
    for (std::uint32_t frame = 0; frame < frames; ++frame)
        left[frame] = right[frame] = 0.5F * (left[frame] + right[frame]);
}

void TapCycle::run(const CycleTime& time, const CycleBuffers& buffers) noexcept {
    const RealTimeSection section;
    last_ = time;
    rate_.store(time.rate, std::memory_order_relaxed);

    CycleBuffers complete = buffers;
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
        if (complete.input[channel] == nullptr) {
            complete.input[channel] = silence_[channel].data();
            std::fill_n(complete.input[channel], time.frames, 0.0F);
        }
        if (complete.output[channel] == nullptr)
            complete.output[channel] = unheard_[channel].data();
    }
    if (!call(complete)) {
        // Tapped but not played by anybody: the program stays mute.
        for (float* output : complete.output)
            std::fill_n(output, time.frames, 0.0F);
        return;
    }
    if (mono_.load(std::memory_order_relaxed))
        foldToMono(complete.output[0], complete.output[1], time.frames);
}

bool TapCycle::runSilent(std::uint64_t hostTime) noexcept {
    const RealTimeSection section;
    last_.sampleTime += last_.frames;
    last_.hostTime = hostTime;

    CycleBuffers buffers;
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
        buffers.input[channel] = silence_[channel].data();
        buffers.output[channel] = unheard_[channel].data();
        std::fill_n(buffers.input[channel], last_.frames, 0.0F);
    }
    if (!call(buffers))
        return false;
    bool atRest = false;
    gate_.pass([&](const CycleClient& work) {
        atRest = work.client.isAtRest != nullptr && work.client.isAtRest(work.client.clientData);
    });
    return !atRest;
}

bool TapCycle::call(const CycleBuffers& buffers) noexcept {
    return gate_.pass([&](const CycleClient& work) {
        const AudioTimeStamp now{last_.sampleTime, last_.hostTime};
        BufferPair in = makeBuffers(buffers.input, last_.frames);
        BufferPair out = makeBuffers(buffers.output, last_.frames);
        const AudioBufferList input{in};
        AudioBufferList output{out};
        work.client.proc(work.device, &now, &input, &now, &output, &now, work.client.clientData);
    });
}

} // namespace orvanta::pipewire
