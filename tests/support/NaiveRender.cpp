#include "tests/support/NaiveRender.h"

#include "core/dsp/FlushDenormals.h"

#include <algorithm>
#include <cmath>

namespace orvanta::test {

void NaiveRender::render(const std::vector<NaiveBuffer>& in, std::vector<NaiveBuffer>& out) {
    const FlushDenormals flush; // what a processor does with subnormal numbers is the thread's mode
    const int pairCount = static_cast<int>(std::min(in.size(), out.size()));
    for (int i = 0; i < pairCount; ++i)
        renderPair(in[static_cast<std::size_t>(i)], out[static_cast<std::size_t>(i)], i, pairCount);
    runStereoStage(out, pairCount);

    callbackCount += 1;
    inBuffers = static_cast<std::int64_t>(in.size());
    pairs = pairCount;
    if (!out.empty())
        outSamples = out[0].bytes / 4;
    if (!in.empty()) {
        inBytes = in[0].bytes;
        inSamples = in[0].bytes / 4;
        if (callbackCount % 100 == 0 && in[0].samples && in[0].bytes / 4 != 0) {
            inPeak = 0;
            for (std::uint32_t k = 0; k < std::min(in[0].bytes / 4, 4096U); ++k)
                inPeak = std::max(inPeak, std::fabs((*in[0].samples)[k]));
        }
    }
    meter(out, pairCount);
    for (auto i = static_cast<std::size_t>(pairCount); i < out.size(); ++i)
        if (out[i].samples)
            for (std::uint32_t k = 0; k < out[i].bytes / 4; ++k)
                (*out[i].samples)[k] = 0;
}

void NaiveRender::renderPair(const NaiveBuffer& in, NaiveBuffer& out, int index, int pairCount) {
    if (!in.samples || !out.samples)
        return;
    const int count = static_cast<int>(std::min(in.bytes, out.bytes) / 4);
    for (int k = 0; k < count; ++k)
        (*out.samples)[static_cast<std::size_t>(k)] = (*in.samples)[static_cast<std::size_t>(k)];
    if (silentCallbackCount < 10 && normalizationEnabled)
        normalizer.process(out.samples->data(), static_cast<std::size_t>(count),
                           static_cast<std::size_t>(index));
    const float gain = isMuted ? 0.0F : volume;
    if (gain < 0.999F || gain > 1.001F)
        for (int k = 0; k < count; ++k)
            (*out.samples)[static_cast<std::size_t>(k)] *= gain;
    if (silentCallbackCount <= 9)
        runEffects(*out.samples, count, index);
    balancePair(out, count, index, pairCount);
}

void NaiveRender::runEffects(std::vector<float>& samples, int count, int index) {
    const auto length = static_cast<std::size_t>(count);
    const auto channel = static_cast<std::size_t>(index);
    equaliser.process(samples.data(), length, channel);
    compressor.process(samples.data(), length, channel);
    if (limiterEnabled)
        limiter.process(samples.data(), length, channel);
}

void NaiveRender::runStereoStage(std::vector<NaiveBuffer>& out, int pairCount) {
    if (pairCount == 0 || silentCallbackCount >= 10 || !out[0].samples)
        return;
    std::vector<float>& first = *out[0].samples;
    std::vector<float> left;
    std::vector<float> right;
    if (out[0].channels >= 2) {
        for (std::size_t frame = 0; frame < first.size() / out[0].channels; ++frame) {
            left.push_back(first[2 * frame]);
            right.push_back(first[2 * frame + 1]);
        }
        reference::widen(left, right, stereoWidth);
        crossfeed.process(left, right);
        for (std::size_t frame = 0; frame < left.size(); ++frame) {
            first[2 * frame] = left[frame];
            first[2 * frame + 1] = right[frame];
        }
        return;
    }
    if (pairCount == 1 || !out[1].samples)
        return;
    std::vector<float>& second = *out[1].samples;
    const std::size_t count = std::min(first.size(), second.size());
    left.assign(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(count));
    right.assign(second.begin(), second.begin() + static_cast<std::ptrdiff_t>(count));
    reference::widen(left, right, stereoWidth);
    crossfeed.process(left, right);
    std::copy(left.begin(), left.end(), first.begin());
    std::copy(right.begin(), right.end(), second.begin());
}

void NaiveRender::balancePair(NaiveBuffer& out, int samples, int index, int pairCount) const {
    if (std::fabs(balance) <= 0.01F)
        return;
    const int channels = static_cast<int>(out.channels);
    for (int k = 0; k < samples; ++k) {
        float gain = 1;
        if (channels >= 2) {
            const bool isInWholeFrame = k < samples / channels * channels;
            if (isInWholeFrame && k % channels == 0)
                gain = std::min(1 - balance, 1.0F);
            if (isInWholeFrame && k % channels == 1)
                gain = std::min(1 + balance, 1.0F);
        } else if (pairCount > 1) {
            gain = index == 0 ? 1 - balance : 1 + balance;
        }
        if (gain < 0.999F)
            (*out.samples)[static_cast<std::size_t>(k)] *= gain;
    }
}

void NaiveRender::meter(std::vector<NaiveBuffer>& out, int pairCount) {
    if (pairCount == 0 || !out[0].samples || out[0].bytes / 4 == 0)
        return;
    const std::uint32_t measured = std::min(out[0].bytes / 4, 4096U);
    double squares = 0;
    float peak = 0;
    for (std::uint32_t k = 0; k < measured; ++k) {
        const float sample = (*out[0].samples)[k];
        squares += static_cast<double>(sample) * static_cast<double>(sample);
        peak = std::max(peak, std::fabs(sample));
    }
    const auto rms = static_cast<float>(std::sqrt(squares / measured));
    peakLevel = std::max(peak, peakLevel * 0.85F);
    rmsLevel = rmsLevel * 0.7F + rms * 0.3F;
    if (peakLevel < 0.000001F)
        peakLevel = 0;
    if (rmsLevel < 0.00000001F)
        rmsLevel = 0;
    if (peak >= 0.000001F)
        silentCallbackCount = 0;
    else if (silentCallbackCount <= 19)
        silentCallbackCount += 1;
    if (gateEnabled)
        gate(out, pairCount, rms, measured);
}

void NaiveRender::gate(std::vector<NaiveBuffer>& out, int pairCount, float rms,
                       std::uint64_t measured) {
    float target = 0;
    if (rms >= gateThreshold) {
        gateSilentCount = 0;
        gateOpen = true;
        target = 1;
    } else {
        gateSilentCount += measured;
        if (gateSilentCount >= 9600)
            gateOpen = false;
        target = gateOpen ? 1.0F : 0.0F;
    }
    if (gateFadeGain < target)
        gateFadeGain = std::min(gateFadeGain + 0.02F, target);
    else if (gateFadeGain > target)
        gateFadeGain = std::max(gateFadeGain - 0.02F, target);
    if (gateFadeGain >= 0.999F)
        return;
    for (int i = 0; i < pairCount; ++i) {
        NaiveBuffer& buffer = out[static_cast<std::size_t>(i)];
        if (buffer.samples)
            for (std::uint32_t k = 0; k < buffer.bytes / 4; ++k)
                (*buffer.samples)[k] *= gateFadeGain;
    }
}

} // namespace orvanta::test
