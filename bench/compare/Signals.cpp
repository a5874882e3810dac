#include "bench/compare/Signals.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>

namespace orvanta::compare {
namespace {

std::vector<float> oneChannelOfMusic(std::size_t frames, unsigned seed) {
    constexpr std::size_t framesPerLevel = 2400;
    std::mt19937 random(seed);
    std::normal_distribution<double> white;
    std::uniform_real_distribution<double> level(0.15, 1.8);
    std::vector<float> samples(frames);
    double low = 0.0;
    double loudness = 1.0;
    for (std::size_t k = 0; k < frames; ++k) {
        if (k % framesPerLevel == 0)
            loudness = level(random);
        low = 0.97 * low + 0.3 * white(random);
        samples[k] = static_cast<float>(loudness * (low + 0.1 * white(random)));
    }
    return samples;
}

double sumOfSquares(const std::vector<float>& samples) {
    double sum = 0.0;
    for (const float sample : samples)
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    return sum;
}

} // namespace

Signal::Signal(std::vector<float> left, std::vector<float> right)
    : left_(std::move(left)), right_(std::move(right)), interleaved_(2 * left_.size()) {
    for (std::size_t k = 0; k < left_.size(); ++k) {
        interleaved_[2 * k] = left_[k];
        interleaved_[2 * k + 1] = right_[k];
    }
}

double Signal::peak() const {
    float highest = 0.0F;
    for (const float sample : interleaved_)
        highest = std::max(highest, std::fabs(sample));
    return static_cast<double>(highest);
}

double Signal::rms() const {
    return std::sqrt(sumOfSquares(interleaved_) / static_cast<double>(interleaved_.size()));
}

double decibels(double ratio) {
    return 20.0 * std::log10(ratio);
}

double ratioOf(double decibels) {
    return std::pow(10.0, decibels / 20.0);
}

Signal music(std::size_t frames, double rms) {
    auto left = oneChannelOfMusic(frames, 1);
    auto right = oneChannelOfMusic(frames, 2);
    const double present =
        std::sqrt((sumOfSquares(left) + sumOfSquares(right)) / static_cast<double>(2 * frames));
    for (auto* const channel : {&left, &right})
        for (float& sample : *channel)
            sample *= static_cast<float>(rms / present);
    return {std::move(left), std::move(right)};
}

Signal sine(std::size_t frames, double frequency, double leftPeak, double rightPeak) {
    std::vector<float> left(frames);
    std::vector<float> right(frames);
    for (std::size_t k = 0; k < frames; ++k) {
        const double value =
            std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(k) / kSampleRate);
        left[k] = static_cast<float>(leftPeak * value);
        right[k] = static_cast<float>(rightPeak * value);
    }
    return {std::move(left), std::move(right)};
}

Signal impulse(std::size_t frames, float height) {
    std::vector<float> samples{height};
    samples.resize(frames);
    return {samples, samples};
}

} // namespace orvanta::compare
