#include "core/dsp/LimiterProcessor.h"

#include "core/dsp/UsableRate.h"

#include <algorithm>
#include <cmath>

namespace orvanta {
namespace {

constexpr double kLookAheadSeconds = 0.001;
constexpr double kReleaseSeconds = 0.05;

std::size_t lookAheadAt(double sampleRate) {
    return std::max<std::size_t>(
        static_cast<std::size_t>(usableRate(sampleRate) * kLookAheadSeconds), 1);
}

float releaseAt(double sampleRate) {
    return static_cast<float>(
        std::exp(-1.0 / std::max(usableRate(sampleRate) * kReleaseSeconds, 1.0)));
}

} // namespace

LimiterProcessor::LimiterProcessor(double sampleRate, std::size_t maxChannels,
                                   const Kernels& kernels)
    : kernels_(kernels.level),
      lookAheadSamples_(lookAheadAt(sampleRate)),
      releaseCoeff_(releaseAt(sampleRate)),
      channels_(maxChannels, Channel{.line = DelayLine(lookAheadSamples_)}) {}

void LimiterProcessor::setCeiling(float decibels) noexcept {
    ceiling_.store(decibels);
    ceilingLinear_.store(std::pow(10.0F, decibels / 20.0F));
}

LimiterSettings LimiterProcessor::settings() const noexcept {
    return {
        .ceiling = ceilingLinear_.load(), .release = releaseCoeff_, .lookAhead = lookAheadSamples_};
}

void LimiterProcessor::clear() noexcept {
    for (Channel& channel : channels_) {
        channel.line.clear();
        channel.envelope = 0.0F;
    }
    gainReductionDB_.store(0.0F);
}

void LimiterProcessor::process(float* buffer, std::size_t count, std::size_t channel) noexcept {
    if (!enabled_.load() || channel >= channels_.size() || count < 1)
        return;
    clear_.answer([this] { clear(); });

    const LimiterSettings limits = settings();
    Channel& state = channels_[channel];
    LimiterRun run{.envelope = state.envelope};
    for (std::size_t done = 0; done < count;) {
        const std::size_t length = std::min(count - done, state.line.longestRun());
        run.line = state.line.nextRun(length);
        kernels_.limit(buffer + done, length, limits, run);
        done += length;
    }
    state.envelope = run.envelope;
    publishReduction(run.minGain);
}

void LimiterProcessor::processPair(float* left, float* right, std::size_t count) noexcept {
    if (channels_.size() < 2) {
        process(left, count, 0);
        return;
    }
    if (!enabled_.load() || count < 1)
        return;
    clear_.answer([this] { clear(); });

    const LimiterSettings limits = settings();
    Channel& first = channels_[0];
    Channel& second = channels_[1];
    LimiterRun firstRun{.envelope = first.envelope};
    LimiterRun secondRun{.envelope = second.envelope};
    for (std::size_t done = 0; done < count;) {
        const std::size_t length = std::min(count - done, first.line.longestRun());
        firstRun.line = first.line.nextRun(length);
        secondRun.line = second.line.nextRun(length);
        kernels_.limitPair(left + done, right + done, length, limits, firstRun, secondRun);
        done += length;
    }
    first.envelope = firstRun.envelope;
    second.envelope = secondRun.envelope;
    publishReduction(firstRun.minGain);
    publishReduction(secondRun.minGain);
}

void LimiterProcessor::publishReduction(float minGain) noexcept {
    const float fallen = 0.9F * gainReductionDB_.load();
    if (minGain < 0.999F) {
        const float reduction = -20.0F * std::log10(std::max(minGain, 1e-10F));
        gainReductionDB_.store(std::max(reduction, fallen));
    } else {
        gainReductionDB_.store(std::max(0.0F, fallen));
    }
}

} // namespace orvanta
