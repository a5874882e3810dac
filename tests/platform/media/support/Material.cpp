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
                                         std::uint32_t channels, std::uint64_t start,
                                         std::uint64_t length, std::size_t blockSize) {
    std::optional<std::string> reason;
    std::vector<std::vector<float>> block(channels);
    for (std::uint64_t done = 0; done < length;) {
        const std::size_t count = std::min<std::uint64_t>(blockSize, length - done);
        std::vector<const float*> pointers;
        for (std::uint32_t channel = 0; channel < channels; ++channel) {
            block[channel].resize(count);
            for (std::size_t frame = 0; frame < count; ++frame)
                block[channel][frame] = material(channel, start + done + frame);
            pointers.push_back(block[channel].data());
        }
        if (auto failure = file.write(pointers, count))
            reason = std::move(failure);
        done += count;
    }
    return reason;
}

double signalToNoise(std::span<const float> interleaved, std::uint32_t channels,
                     const Material& material, std::uint64_t skip, std::uint64_t start) {
    double signal = 0;
    double noise = 0;
    for (std::size_t index = skip * channels; index < interleaved.size(); ++index) {
        const auto channel = static_cast<std::uint32_t>(index % channels);
        const auto wanted = static_cast<double>(material(channel, start + index / channels - skip));
        const double difference = static_cast<double>(interleaved[index]) - wanted;
        signal += wanted * wanted;
        noise += difference * difference;
    }
    return 10 * std::log10(signal / noise);
}

} // namespace orvanta::test
