#include "tests/platform/media/support/Material.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvanta::test {

Material wanderingTones(double sampleRate) {
    return [sampleRate](std::uint32_t channel, std::uint64_t frame) {
        const double time = static_cast<double>(frame) / sampleRate;
        const double middle = 3000.0 + 800.0 * channel;
        const double breadth = 1000.0;
        const double pace = 0.7 + 0.11 * channel;
        const double cycles = middle * time - breadth / pace * std::cos(pace * time);
        return static_cast<float>(0.4 * std::sin(2 * std::numbers::pi * cycles));
    };
}

std::optional<std::string> writeMaterial(AudioFile& file, const Material& material,
                                         std::uint32_t channels, std::uint64_t first,
                                         std::uint64_t frames, std::size_t blockFrames) {
    std::optional<std::string> reason;
    std::vector<std::vector<float>> block(channels);
    for (std::uint64_t done = 0; done < frames;) {
        const std::size_t count = std::min<std::uint64_t>(blockFrames, frames - done);
        std::vector<const float*> pointers;
        for (std::uint32_t channel = 0; channel < channels; ++channel) {
            block[channel].resize(count);
            for (std::size_t frame = 0; frame < count; ++frame)
                block[channel][frame] = material(channel, first + done + frame);
            pointers.push_back(block[channel].data());
        }
        if (auto failure = file.write(pointers, count))
            reason = std::move(failure);
        done += count;
    }
    return reason;
}

double signalToNoise(std::span<const float> interleaved, std::uint32_t channels,
                     const Material& material, std::uint64_t skip, std::uint64_t first) {
    double signal = 0;
    double noise = 0;
    for (std::size_t index = skip * channels; index < interleaved.size(); ++index) {
        const double wanted =
            material(static_cast<std::uint32_t>(index % channels), first + index / channels - skip);
        const double difference = double{interleaved[index]} - wanted;
        signal += wanted * wanted;
        noise += difference * difference;
    }
    return 10 * std::log10(signal / noise);
}

} // namespace orvanta::test
