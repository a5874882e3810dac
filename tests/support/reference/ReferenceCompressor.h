#pragma once

#include "core/dsp/CompressorPreset.h"
#include "core/dsp/kernels/Log2Exp2.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

/// The three-band compressor one sample and one operation after the other, with no regard to time.
namespace orvanta::reference {

/// log2 and 2^x of the C library.
struct LibraryPowers {
    static float log2(float x) { return std::log2(x); }

    static float exp2(float x) { return std::exp2(x); }
};

/// Those of the fast version, whose distance from the C library's has tests of its own.
struct ApproximatePowers {
    static float log2(float x) { return log2Of(x); }

    static float exp2(float x) { return exp2Of(x); }
};

template <class Powers>
class Compressor {
public:
    static constexpr std::size_t bandCount = 3;
    static constexpr std::size_t ringLength = 480;

    using Row = std::array<double, 5>;

    struct Section {
        double x1 = 0;
        double x2 = 0;
        double y1 = 0;
        double y2 = 0;
    };

    struct Ring {
        std::array<float, ringLength> samples{};
        std::size_t write = 0;
    };

    struct Channel {
        std::array<std::array<Section, 2>, 2> lowPass;  ///< by crossover and section
        std::array<std::array<Section, 2>, 2> highPass; ///< by crossover and section
        std::array<float, bandCount> envelopes{};
        std::array<Ring, bandCount> rings;
    };

    Compressor(double sampleRate, std::size_t maxChannels, std::size_t maxBufferSize)
        : sampleRate_(sampleRate),
          maxBufferSize_(maxBufferSize),
          settings_{CompressorPreset::off.bands},
          scratchLow_(maxBufferSize),
          scratchMid_(maxBufferSize),
          scratchHigh_(maxBufferSize),
          scratchTemp_(maxBufferSize),
          scratchGain_(maxBufferSize, 1.0F),
          channels_(maxChannels) {
        updateCrossoverCoefficients();
        updateBandParameters();
    }

    void apply(const CompressorPreset& preset) {
        if (preset.bands.size() != bandCount)
            return;
        settings_ = preset.bands;
        updateBandParameters();
    }

    void setBand(int index, const CompressorBandSettings& settings) {
        if (index < 0 || index >= 3)
            return;
        settings_[static_cast<std::size_t>(index)] = settings;
        updateBandParameters();
    }

    void updateSampleRate(double rate) {
        if (!(rate > 0))
            return;
        sampleRate_ = rate;
        updateCrossoverCoefficients();
        updateBandParameters();
        std::fill(channels_.begin(), channels_.end(), Channel{});
        gainReduction = {};
    }

    bool isOff() const { return CompressorPreset{settings_}.isOff(); }

    void process(float* buffer, std::size_t count, std::size_t channel) {
        if (channel >= channels_.size() || count < 1 || count > maxBufferSize_ || isOff())
            return;
        Channel& past = channels_[channel];
        split(buffer, past, count);
        const auto publishedBefore = gainReduction;
        processBand(0, scratchLow_.data(), past, count);
        processBand(1, scratchMid_.data(), past, count);
        processBand(2, scratchHigh_.data(), past, count);
        for (std::size_t i = 0; i < count; ++i)
            buffer[i] = scratchLow_[i] + scratchMid_[i];
        for (std::size_t i = 0; i < count; ++i)
            buffer[i] = buffer[i] + scratchHigh_[i];
        guard(buffer, past, publishedBefore, count);
    }

    /// The split alone, into low, middle and high.
    std::array<std::vector<float>, bandCount> splitOf(const std::vector<float>& input,
                                                      std::size_t channel) {
        split(input.data(), channels_[channel], input.size());
        return {scratchLow_, scratchMid_, scratchHigh_};
    }

    const Channel& channel(std::size_t index) const { return channels_[index]; }

    std::array<float, bandCount> gainReduction{};

private:
    void updateCrossoverCoefficients() {
        constexpr std::array<double, 2> frequencies{250.0, 4000.0};
        for (std::size_t k = 0; k < 2; ++k) {
            const double w0 = frequencies[k] * 6.283185307179586 / sampleRate_;
            const double s = std::sin(w0);
            const double c = std::cos(w0);
            const double alpha = s / 2.8284271247461903;
            const double a0 = 1 + alpha;
            const double a1 = -2 * c;
            const double a2 = 1 - alpha;
            lowPassRows_[k] = {(1 - c) / 2 / a0, (1 - c) / a0, (1 - c) / 2 / a0, a1 / a0, a2 / a0};
            highPassRows_[k] = {(1 + c) / 2 / a0, -(1 + c) / a0, (1 + c) / 2 / a0, a1 / a0,
                                a2 / a0};
        }
    }

    float coefficient(float milliseconds) const {
        const double samples = static_cast<double>(milliseconds) / 1000 * sampleRate_;
        return static_cast<float>(samples >= 1 ? std::exp(-1 / samples) : std::exp(-1.0));
    }

    void updateBandParameters() {
        for (std::size_t band = 0; band < bandCount; ++band) {
            const CompressorBandSettings& set = settings_[band];
            attackCoeffs_[band] = coefficient(set.attackMs);
            releaseCoeffs_[band] = coefficient(set.releaseMs);
            const float exponent =
                set.ratio > 1.05F && set.autoMakeup
                    ? (1 - 1 / set.ratio) * set.threshold * (-0.5F) * 0.050170887F
                    : set.makeupGain * 0.050170887F;
            makeupLinear_[band] = std::exp2(exponent);
            const float samples =
                std::max(set.lookaheadMs, 0.0F) / 1000 * static_cast<float>(sampleRate_);
            lookaheadSamples_[band] = std::min<std::size_t>(static_cast<std::size_t>(samples), 479);
        }
    }

    static void runSection(const Row& row, Section& state, const float* in, float* out,
                           std::size_t count) {
        const auto [b0, b1, b2, a1, a2] = row;
        for (std::size_t i = 0; i < count; ++i) {
            const auto x = static_cast<double>(in[i]);
            const double y = b0 * x + b1 * state.x1 + b2 * state.x2 - a1 * state.y1 - a2 * state.y2;
            out[i] = static_cast<float>(y);
            state = {x, state.x1, y, state.y1};
        }
    }

    void splitAtCrossover(const float* input, float* low, float* high, std::size_t crossover,
                          Channel& past, std::size_t count) {
        float* const staging = scratchTemp_.data();
        runSection(lowPassRows_[crossover], past.lowPass[crossover][0], input, low, count);
        runSection(lowPassRows_[crossover], past.lowPass[crossover][1], low, staging, count);
        std::copy_n(staging, count, low);
        runSection(highPassRows_[crossover], past.highPass[crossover][0], input, high, count);
        runSection(highPassRows_[crossover], past.highPass[crossover][1], high, staging, count);
        std::copy_n(staging, count, high);
    }

    /// The second time the staging buffer is the input as well: what the high-pass sections read
    /// there is the middle band.
    void split(const float* buffer, Channel& past, std::size_t count) {
        float* const staging = scratchTemp_.data();
        splitAtCrossover(buffer, scratchLow_.data(), staging, 0, past, count);
        splitAtCrossover(staging, scratchMid_.data(), scratchHigh_.data(), 1, past, count);
    }

    void processBand(std::size_t band, float* signal, Channel& past, std::size_t count) {
        const CompressorBandSettings& set = settings_[band];
        if (!(set.ratio > 1.05F))
            return;
        const bool isRMS = set.detectionMode == DetectionMode::rms;
        const float threshold = set.threshold;
        const float kneeLow = threshold - 1.5F;
        const float kneeHigh = threshold + 1.5F;
        const float slope = 1 / set.ratio - 1;
        float env = past.envelopes[band];
        float maxReduction = 0;
        Ring& ring = past.rings[band];
        for (std::size_t i = 0; i < count; ++i) {
            const float s = signal[i];
            const float v = isRMS ? s * s : std::fabs(s);
            const float k = env < v ? attackCoeffs_[band] : releaseCoeffs_[band];
            env = k * env + (1 - k) * v;

            float level = -120;
            if (isRMS && env > 1e-20F)
                level = Powers::log2(env) * 3.0103F;
            if (!isRMS && env > 1e-10F)
                level = Powers::log2(env) * 6.0206F;

            const float over = level - threshold;
            float g = 0;
            if (level < kneeLow)
                g = 0;
            else if (level > kneeHigh)
                g = threshold + over / set.ratio - level;
            else
                g = (over + 1.5F) * slope * (over + 1.5F) / 6;
            maxReduction = std::max(maxReduction, -g);
            scratchGain_[i] = Powers::exp2(g * 0.050170887F) * makeupLinear_[band];

            if (const std::size_t delay = lookaheadSamples_[band]; delay >= 1) {
                const std::size_t read = (ring.write + ringLength - delay) % ringLength;
                const float delayed = ring.samples[read];
                ring.samples[ring.write] = s;
                ring.write = (ring.write + 1) % ringLength;
                signal[i] = delayed;
            }
        }
        past.envelopes[band] = env;
        for (std::size_t i = 0; i < count; ++i)
            signal[i] = signal[i] * scratchGain_[i];
        gainReduction[band] = std::max(maxReduction, 0.9F * gainReduction[band]);
    }

    static bool isSound(const Channel& past) {
        bool isFinite = true;
        for (const auto* const sections : {&past.lowPass, &past.highPass})
            for (const auto& crossover : *sections)
                for (const Section& section : crossover)
                    for (const double value : {section.x1, section.x2, section.y1, section.y2})
                        isFinite = isFinite && std::isfinite(value);
        return isFinite;
    }

    /// What is not finite does not outlive the block.
    void guard(float* buffer, Channel& past, const std::array<float, bandCount>& publishedBefore,
               std::size_t count) {
        const bool filtersAreSound = isSound(past);
        if (!filtersAreSound) {
            past.lowPass = {};
            past.highPass = {};
            for (std::size_t band = 0; band < bandCount; ++band)
                if (settings_[band].ratio > 1.05F)
                    gainReduction[band] = 0.9F * publishedBefore[band];
        }
        for (float& envelope : past.envelopes)
            if (!std::isfinite(envelope))
                envelope = filtersAreSound && envelope > 0 ? FLT_MAX : 0.0F;
        for (Ring& ring : past.rings)
            for (float& sample : ring.samples)
                if (!std::isfinite(sample))
                    sample = 0;
        for (std::size_t i = 0; i < count; ++i)
            if (!std::isfinite(buffer[i]))
                buffer[i] = 0;
    }

    double sampleRate_;
    std::size_t maxBufferSize_;
    std::vector<CompressorBandSettings> settings_;
    std::array<Row, 2> lowPassRows_{};
    std::array<Row, 2> highPassRows_{};
    std::array<float, bandCount> attackCoeffs_{};
    std::array<float, bandCount> releaseCoeffs_{};
    std::array<float, bandCount> makeupLinear_{};
    std::array<std::size_t, bandCount> lookaheadSamples_{};
    std::vector<float> scratchLow_;
    std::vector<float> scratchMid_;
    std::vector<float> scratchHigh_;
    std::vector<float> scratchTemp_;
    std::vector<float> scratchGain_;
    std::vector<Channel> channels_;
};

} // namespace orvanta::reference
