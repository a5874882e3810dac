#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvanta::test {

/// Noise that is known sample by sample, as long as one likes. Every sample is a whole number of
/// 1/32768 (so 16-bit files and players carry it without loss) and its magnitude lies between 0.1
/// and 0.45: never silent, at half the level never mistaken for itself, and twice the signal at
/// once does not clip. Any three neighbours tell the place.
class NoiseSignal {
public:
    explicit NoiseSignal(std::uint64_t seed) : seed_(seed) {}

    [[nodiscard]] float sample(std::uint32_t channel, std::uint64_t position) const;

    /// The first `frames` samples of one channel.
    [[nodiscard]] std::vector<float> channel(std::uint32_t channel, std::size_t frames) const;

private:
    std::uint64_t seed_;
};

} // namespace orvanta::test
