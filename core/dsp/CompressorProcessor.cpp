#include "core/dsp/CompressorProcessor.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <span>

namespace orvanta {
namespace {

/// A whole number of cache lines, in floats.
constexpr std::size_t inCacheLines(std::size_t count) {
    constexpr std::size_t kLine = 16;
    return (count + kLine - 1) / kLine * kLine;
}

/// Before a block of a band there is room for what its look-ahead line holds.
constexpr std::size_t kHistory = inCacheLines(kMaxLookaheadSamples);
static_assert(kHistory >= kBandSignalMargin && kGainPadding >= kBandSignalMargin);

/// Signal and envelope of each band, for two channels.
constexpr std::size_t kScratchBuffers = 2 * kCompressorBandCount * 2;

std::size_t scratchLength(std::size_t maxBufferSize) {
    return kHistory + inCacheLines(maxBufferSize) + kGainPadding;
}

/// What lies around the end of a ring comes in two pieces.
template <class Function>
void inTwoPieces(std::size_t start, std::size_t count, Function function) {
    const std::size_t first = std::min(count, kMaxLookaheadSamples - start);
    function(start, std::size_t{0}, first);
    function(std::size_t{0}, first, count - first);
}

void silenceWhatIsNotFinite(std::span<float> samples) noexcept {
    std::replace_if(
        samples.begin(), samples.end(), [](float sample) { return !std::isfinite(sample); }, 0.0F);
}

} // namespace

CompressorProcessor::CompressorProcessor(double sampleRate, std::size_t maxChannels,
                                         std::size_t maxBufferSize, const Kernels& kernels)
    : kernels_(kernels.compressor),
      maxChannels_(maxChannels),
      maxBufferSize_(maxBufferSize),
      sampleRate_(sampleRate),
      settings_{},
      parameters_(designed()),
      channels_(maxChannels),
      scratch_(kScratchBuffers * scratchLength(maxBufferSize)) {
    float* next = scratch_.data() + kHistory;
    for (Block& block : blocks_) {
        for (std::size_t band = 0; band < kCompressorBandCount; ++band) {
            block.signals.band[band] = next;
            next += scratchLength(maxBufferSize);
            block.envelopes[band] = next;
            next += scratchLength(maxBufferSize);
        }
    }
}

void CompressorProcessor::apply(const CompressorPreset& preset) noexcept {
    if (preset.bands.size() != kCompressorBandCount)
        return;
    std::copy(preset.bands.begin(), preset.bands.end(), settings_.begin());
    publish();
}

void CompressorProcessor::setBand(int index, const CompressorBandSettings& settings) noexcept {
    if (index < 0 || static_cast<std::size_t>(index) >= settings_.size())
        return;
    settings_[static_cast<std::size_t>(index)] = settings;
    publish();
}

void CompressorProcessor::updateSampleRate(double rate) noexcept {
    if (!(rate > 0.0))
        return;
    sampleRate_ = rate;
    ++clearGeneration_;
    publish();
    setGainReduction({});
}

CompressorPreset CompressorProcessor::currentPreset() const {
    return {{settings_.begin(), settings_.end()}};
}

bool CompressorProcessor::isOff() const noexcept {
    return isCompressorOff(settings_);
}

std::array<float, kCompressorBandCount> CompressorProcessor::gainReduction() const noexcept {
    std::array<float, kCompressorBandCount> decibels{};
    for (std::size_t band = 0; band < decibels.size(); ++band)
        decibels[band] = gainReduction_[band].load();
    return decibels;
}

void CompressorProcessor::setGainReduction(
    const std::array<float, kCompressorBandCount>& decibels) noexcept {
    for (std::size_t band = 0; band < decibels.size(); ++band)
        gainReduction_[band].store(decibels[band]);
}

CompressorProcessor::Parameters CompressorProcessor::designed() const noexcept {
    Parameters parameters{};
    parameters.crossover = crossoverAt(sampleRate_);
    for (std::size_t band = 0; band < settings_.size(); ++band)
        parameters.bands[band] = compressorBandOf(settings_[band], sampleRate_);
    parameters.isOff = isOff();
    parameters.clearGeneration = clearGeneration_;
    return parameters;
}

void CompressorProcessor::publish() noexcept {
    parameters_.publish(designed());
}

const CompressorProcessor::Parameters& CompressorProcessor::latestParameters() noexcept {
    const Parameters& parameters = parameters_.latest();
    if (parameters.clearGeneration != clearedGeneration_) {
        clearedGeneration_ = parameters.clearGeneration;
        std::fill(channels_.begin(), channels_.end(), Channel{});
        // A block that was under way may have published its own after the rate was changed.
        setGainReduction({});
    }
    return parameters;
}

void CompressorProcessor::process(float* buffer, std::size_t count, std::size_t channel) noexcept {
    if (channel >= maxChannels_ || count < 1 || count > maxBufferSize_)
        return;
    const Parameters& parameters = latestParameters();
    if (parameters.isOff)
        return;
    kernels_.split(buffer, count, parameters.crossover, channels_[channel].crossover,
                   blocks_[0].signals);
    followEnvelopes(parameters, channel, 1, count);
    finish(parameters, channel, blocks_[0], buffer, count);
}

void CompressorProcessor::processPair(float* left, float* right, std::size_t count) noexcept {
    if (maxChannels_ < 2) {
        process(left, count, 0);
        return;
    }
    if (count < 1 || count > maxBufferSize_)
        return;
    const Parameters& parameters = latestParameters();
    if (parameters.isOff)
        return;
    kernels_.splitPair(left, right, count, parameters.crossover, channels_[0].crossover,
                       channels_[1].crossover, blocks_[0].signals, blocks_[1].signals);
    followEnvelopes(parameters, 0, 2, count);
    finish(parameters, 0, blocks_[0], left, count);
    finish(parameters, 1, blocks_[1], right, count);
}

void CompressorProcessor::followEnvelopes(const Parameters& parameters, std::size_t firstChannel,
                                          std::size_t channelCount, std::size_t count) noexcept {
    std::array<EnvelopeChain, 2 * kCompressorBandCount> chains{};
    std::size_t chainCount = 0;
    for (std::size_t k = 0; k < channelCount; ++k) {
        Block& block = blocks_[k];
        Channel& channel = channels_[firstChannel + k];
        for (std::size_t band = 0; band < kCompressorBandCount; ++band) {
            if (!parameters.bands[band].isActive)
                continue;
            chains[chainCount++] = {&parameters.bands[band], block.signals.band[band],
                                    block.envelopes[band], &channel.envelopes[band],
                                    &block.highest[band]};
        }
    }
    if (chainCount > 0)
        kernels_.follow(chains.data(), chainCount, count);
}

void CompressorProcessor::finish(const Parameters& parameters, std::size_t channelIndex,
                                 Block& block, float* output, std::size_t count) noexcept {
    Channel& channel = channels_[channelIndex];
    Reductions reductions{};
    GainedSignal gained[kCompressorBandCount];
    for (std::size_t b = 0; b < kCompressorBandCount; ++b) {
        const CompressorBand& band = parameters.bands[b];
        float* const gains = block.envelopes[b];
        gained[b] = {block.signals.band[b], gains};
        if (!band.isActive) {
            std::fill_n(gains, count, 1.0F);
            continue;
        }
        if (block.highest[b] < band.idleBelow)
            std::fill_n(gains, count, band.makeup);
        else
            reductions[b] = kernels_.gains(gains, count, band);
        if (band.lookAheadSamples > 0)
            gained[b].signal =
                delayed(channel.lines[b], block.signals.band[b], count, band.lookAheadSamples);
    }
    const bool isFinite = kernels_.mix(gained, output, count);
    if (!isFinite || !isSound(channel)) {
        cure(channel, reductions);
        silenceWhatIsNotFinite({output, count});
    }
    publishReductions(parameters, reductions);
}

const float* CompressorProcessor::delayed(LookAheadLine& line, float* signal, std::size_t count,
                                          std::size_t delay) noexcept {
    float* const start = signal - delay;
    inTwoPieces((line.position + kMaxLookaheadSamples - delay) % kMaxLookaheadSamples,
                std::min(delay, count), [&](std::size_t from, std::size_t to, std::size_t length) {
                    std::copy_n(line.samples.begin() + static_cast<std::ptrdiff_t>(from), length,
                                start + to);
                });
    const std::size_t kept = std::min(count, kMaxLookaheadSamples);
    const float* const newest = signal + (count - kept);
    inTwoPieces((line.position + (count - kept)) % kMaxLookaheadSamples, kept,
                [&](std::size_t to, std::size_t from, std::size_t length) {
                    std::copy_n(newest + from, length,
                                line.samples.begin() + static_cast<std::ptrdiff_t>(to));
                });
    line.position = (line.position + count) % kMaxLookaheadSamples;
    return start;
}

/// The last section of each way through the crossover tells about all before it: what is not
/// finite goes on into every later section with the same sample, and stays in the outputs that a
/// section remembers.
bool CompressorProcessor::filtersAreSound(const Channel& channel) noexcept {
    return std::isfinite(channel.crossover.lowPass[0][1].y1) &&
           std::isfinite(channel.crossover.highPass[1][1].y1);
}

/// It stays in an envelope too.
bool CompressorProcessor::isSound(const Channel& channel) noexcept {
    return filtersAreSound(channel) &&
           std::all_of(channel.envelopes.begin(), channel.envelopes.end(),
                       [](float envelope) { return std::isfinite(envelope); });
}

void CompressorProcessor::cure(Channel& channel, Reductions& reductions) noexcept {
    const bool hadSoundFilters = filtersAreSound(channel);
    if (!hadSoundFilters) {
        channel.crossover = {};
        reductions = {};
    }
    for (float& envelope : channel.envelopes) {
        if (!std::isfinite(envelope))
            envelope = hadSoundFilters && envelope > 0.0F ? FLT_MAX : 0.0F;
    }
    for (LookAheadLine& line : channel.lines)
        silenceWhatIsNotFinite(line.samples);
}

void CompressorProcessor::publishReductions(const Parameters& parameters,
                                            const Reductions& reductions) noexcept {
    for (std::size_t band = 0; band < kCompressorBandCount; ++band) {
        if (!parameters.bands[band].isActive)
            continue;
        const float fallen = 0.9F * gainReduction_[band].load();
        gainReduction_[band].store(fallen >= reductions[band] ? fallen : reductions[band]);
    }
}

} // namespace orvanta
