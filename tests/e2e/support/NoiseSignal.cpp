#include "tests/e2e/support/NoiseSignal.h"

namespace orvanta::test {

namespace {

std::uint64_t scrambled(std::uint64_t value) {
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30U)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27U)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31U);
}

constexpr int lowest = 3277;   // 0.1 of full scale in 16 bits
constexpr int highest = 14745; // 0.45

} // namespace

float NoiseSignal::sample(std::uint32_t channel, std::uint64_t position) const {
    const std::uint64_t bits = scrambled(scrambled(seed_ * 64 + channel) ^ position);
    const int magnitude = lowest + static_cast<int>((bits >> 1U) % (highest - lowest));
    const int value = (bits & 1U) != 0 ? -magnitude : magnitude;
    return static_cast<float>(value) / 32768.0F;
}

std::vector<float> NoiseSignal::channel(std::uint32_t channel, std::size_t frames) const {
    std::vector<float> samples(frames);
    for (std::size_t frame = 0; frame < frames; ++frame)
        samples[frame] = sample(channel, frame);
    return samples;
}

} // namespace orvanta::test
