#include "core/engine/tapRenderCallback.h"

#include "core/dsp/FlushDenormals.h"
#include "core/dsp/StereoWidener.h"
#include "core/dsp/VectorOperations.h"
#include "core/platform/RealTimeSection.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvanta {
namespace {

/// Meters look at no more of a buffer than this.
constexpr std::size_t kMeasuredSamples = 4096;
/// Where the count of silent callbacks in a row stops.
constexpr std::int32_t kHighestSilentCount = 20;
constexpr float kSilentPeak = 0.000001F;
constexpr float kSilentRMS = 0.00000001F;
constexpr std::uint64_t kCallbacksPerInputPeak = 100;

constexpr float kPeakDecay = 0.85F;
constexpr float kRmsKept = 0.7F;
constexpr float kRmsTaken = 0.3F;

constexpr float kGateStep = 0.02F;
/// A gain between these, both included, passes the signal bit by bit.
constexpr float kUnityFrom = 0.999F;
constexpr float kUnityTo = 1.001F;
constexpr float kCentredBalance = 0.01F;

/// What one callback knows once: its two sides, how many buffers pair, and the gain for all of it.
struct Cycle {
    TapState& state;
    std::span<AudioBuffer> in;
    std::span<AudioBuffer> out;
    std::size_t pairCount;
    float gain;
};

/// The measurement of the first output buffer, raw.
struct Levels {
    float rms;
    std::size_t samples;
};

void reportFirstCallback(const Cycle& cycle) noexcept {
    if (cycle.state.callbackCount.load() != 0)
        return;
    FirstCallback record;
    if (!cycle.in.empty()) {
        record.inSamples = static_cast<long>(cycle.in[0].sampleCount());
        record.inChannels = static_cast<long>(cycle.in[0].mNumberChannels);
    }
    if (!cycle.out.empty()) {
        record.outSamples = static_cast<long>(cycle.out[0].sampleCount());
        record.outChannels = static_cast<long>(cycle.out[0].mNumberChannels);
    }
    record.inBuffers = static_cast<long>(cycle.in.size());
    record.outBuffers = static_cast<long>(cycle.out.size());
    cycle.state.firstCallbackLog.post(record);
}

/// A lone buffer goes to the recorder as it is, several go as the channels of one block.
void record(AudioRecorder* recorder, std::span<const AudioBuffer> buffers) noexcept {
    if (recorder == nullptr || !recorder->isRecording())
        return;
    if (buffers.size() == 1 && buffers[0].mData != nullptr) {
        const auto samples = static_cast<std::int64_t>(buffers[0].sampleCount());
        const auto channels = static_cast<std::int64_t>(buffers[0].mNumberChannels);
        const std::int64_t frames = samples / std::max(channels, std::int64_t{1});
        recorder->writeInterleavedSamples(buffers[0].samples(), frames, channels);
        return;
    }
    for (std::size_t index = 0; index < buffers.size(); ++index)
        if (buffers[index].mData != nullptr)
            recorder->writeSamples(buffers[index].samples(),
                                   static_cast<std::int64_t>(buffers[index].sampleCount()),
                                   static_cast<std::int64_t>(index));
}

/// What goes through the chain together: one output buffer, or the first two when nothing keeps
/// them from going side by side, which costs the processors half as much. Either way every sample
/// and every published value is as if the buffers had gone one after the other.
struct Block {
    std::size_t index;  ///< of the (first) buffer, which is the processors' channel
    float* samples;     ///< of that buffer
    float* pairSamples; ///< of the next buffer, null for a block of one
    std::size_t count;  ///< samples in each

    [[nodiscard]] std::size_t bufferCount() const noexcept { return pairSamples ? 2 : 1; }
};

template <class Processor>
void apply(Processor* processor, const Block& block) noexcept {
    if (processor == nullptr)
        return;
    if (block.pairSamples != nullptr)
        processor->processPair(block.samples, block.pairSamples, block.count);
    else
        processor->process(block.samples, block.count, block.index);
}

void normalise(TapState& state, const Block& block) noexcept {
    if (state.normalizationEnabled.load())
        apply(state.normalizer.borrow(), block);
}

void applyVolume(float gain, const Block& block) noexcept {
    if (!(gain < kUnityFrom || gain > kUnityTo))
        return;
    vDSP::vsmul(block.samples, 1, gain, block.samples, 1, block.count);
    if (block.pairSamples != nullptr)
        vDSP::vsmul(block.pairSamples, 1, gain, block.pairSamples, 1, block.count);
}

void runEffects(TapState& state, const Block& block) noexcept {
    apply(state.eqProcessor.borrow(), block);
    apply(state.compressor.borrow(), block);
    if (state.limiterEnabled.load())
        apply(state.limiter.borrow(), block);
}

/// Attenuates the side the balance points away from; never boosts. A lone mono buffer has no sides.
void applyBalance(const Cycle& cycle, std::size_t index, std::size_t sampleCount) noexcept {
    const float balance = cycle.state.balance.load();
    if (!(std::fabs(balance) > kCentredBalance))
        return;
    float* const samples = cycle.out[index].samples();
    const std::size_t channels = cycle.out[index].mNumberChannels;
    if (channels >= 2) {
        const auto stride = static_cast<std::ptrdiff_t>(channels);
        const std::size_t frames = sampleCount / channels;
        const float left = std::min(1.0F - balance, 1.0F);
        const float right = std::min(1.0F + balance, 1.0F);
        if (left < kUnityFrom)
            vDSP::vsmul(samples, stride, left, samples, stride, frames);
        if (right < kUnityFrom)
            vDSP::vsmul(samples + 1, stride, right, samples + 1, stride, frames);
    } else if (cycle.pairCount > 1) {
        const float gain = index == 0 ? 1.0F - balance : 1.0F + balance;
        if (gain < kUnityFrom)
            vDSP::vsmul(samples, 1, gain, samples, 1, sampleCount);
    }
}

/// Takes over what both sides have room for; answers the whole samples of it. A sample that is no
/// finite number becomes silence here, once for the whole chain: no filter memory, no meter and no
/// device ever sees it. Finite samples keep every bit.
std::size_t copyInput(const AudioBuffer& input, const AudioBuffer& output) noexcept {
    const std::size_t bytes = std::min(input.mDataByteSize, output.mDataByteSize);
    const std::size_t sampleCount = bytes / sizeof(float);
    const std::size_t sampleBytes = sampleCount * sizeof(float);
    vDSP::copyFinite(input.samples(), output.samples(), sampleCount);
    std::memmove(static_cast<char*>(output.mData) + sampleBytes,
                 static_cast<const char*>(input.mData) + sampleBytes, bytes - sampleBytes);
    return sampleCount;
}

void runChain(const Cycle& cycle, const Block& block) noexcept {
    TapState& state = cycle.state;
    const bool isBypassed = state.silentCallbackCount.load() >= kSilentCallbacksBeforeBypass;
    if (!isBypassed)
        normalise(state, block);
    applyVolume(cycle.gain, block);
    if (!isBypassed)
        runEffects(state, block);
    for (std::size_t buffer = 0; buffer < block.bufferCount(); ++buffer)
        applyBalance(cycle, block.index + buffer, block.count);
}

bool isPlayable(const Cycle& cycle, std::size_t index) noexcept {
    return cycle.in[index].mData != nullptr && cycle.out[index].mData != nullptr;
}

std::size_t commonBytes(const Cycle& cycle, std::size_t index) noexcept {
    return std::min(cycle.in[index].mDataByteSize, cycle.out[index].mDataByteSize);
}

bool overlaps(const AudioBuffer& a, const AudioBuffer& b) noexcept {
    const auto startOf = [](const AudioBuffer& buffer) {
        return reinterpret_cast<std::uintptr_t>(buffer.mData);
    };
    return startOf(a) < startOf(b) + b.mDataByteSize && startOf(b) < startOf(a) + a.mDataByteSize;
}

/// True when the first two buffers have the same length and none of what is written for the first
/// is read or written for the second. What the second writes may lie where the first was read: that
/// has been copied by then.
bool canGoSideBySide(const Cycle& cycle) noexcept {
    return cycle.pairCount >= 2 && isPlayable(cycle, 0) && isPlayable(cycle, 1) &&
           commonBytes(cycle, 0) == commonBytes(cycle, 1) &&
           !overlaps(cycle.out[0], cycle.out[1]) && !overlaps(cycle.out[0], cycle.in[1]);
}

void renderSideBySide(const Cycle& cycle) noexcept {
    const std::size_t count = copyInput(cycle.in[0], cycle.out[0]);
    copyInput(cycle.in[1], cycle.out[1]);
    runChain(cycle, {0, cycle.out[0].samples(), cycle.out[1].samples(), count});
}

void renderOne(const Cycle& cycle, std::size_t index) noexcept {
    if (!isPlayable(cycle, index))
        return;
    const std::size_t count = copyInput(cycle.in[index], cycle.out[index]);
    runChain(cycle, {index, cycle.out[index].samples(), nullptr, count});
}

void renderBuffers(const Cycle& cycle) noexcept {
    std::size_t index = 0;
    if (canGoSideBySide(cycle)) {
        renderSideBySide(cycle);
        index = 2;
    }
    for (; index < cycle.pairCount; ++index)
        renderOne(cycle, index);
}

/// Width, then crossfeed, on the two channels that the output has in one buffer or in two.
void runStereoStage(const Cycle& cycle) noexcept {
    TapState& state = cycle.state;
    if (cycle.pairCount == 0 || cycle.out[0].mData == nullptr ||
        state.silentCallbackCount.load() >= kSilentCallbacksBeforeBypass)
        return;
    const float width = state.stereoWidth.load();
    CrossfeedProcessor* const crossfeed = state.crossfeed.borrow();
    const AudioBuffer& first = cycle.out[0];
    if (first.mNumberChannels >= 2) {
        const std::size_t frames = first.sampleCount() / first.mNumberChannels;
        StereoWidener::process(first.samples(), frames, width);
        if (crossfeed != nullptr)
            crossfeed->processInterleaved(first.samples(), frames);
        return;
    }
    if (cycle.pairCount == 1 || cycle.out[1].mData == nullptr)
        return;
    const AudioBuffer& second = cycle.out[1];
    const std::size_t count = std::min(first.sampleCount(), second.sampleCount());
    StereoWidener::processPlanar(first.samples(), second.samples(), count, width);
    if (crossfeed != nullptr)
        crossfeed->processPlanar(first.samples(), second.samples(), count);
}

void updateCounters(const Cycle& cycle) noexcept {
    TapState& state = cycle.state;
    const std::uint64_t count = state.callbackCount.load() + 1;
    state.callbackCount.store(count);
    state.diagInBufCount.store(static_cast<std::int64_t>(cycle.in.size()));
    state.diagCopyCount.store(static_cast<std::int64_t>(cycle.pairCount));
    if (cycle.in.empty())
        return;
    const AudioBuffer& first = cycle.in[0];
    state.diagInBufBytes.store(first.mDataByteSize);
    state.diagInBufSamples.store(static_cast<std::int64_t>(first.sampleCount()));
    if (count % kCallbacksPerInputPeak == 0 && first.mData != nullptr && first.sampleCount() != 0)
        state.diagInPeak.store(
            vDSP::maxmgv(first.samples(), std::min(first.sampleCount(), kMeasuredSamples)));
}

/// Publishes the levels of the first output buffer and keeps the count of silent callbacks.
Levels measure(TapState& state, const AudioBuffer& buffer) noexcept {
    const std::size_t samples = std::min(buffer.sampleCount(), kMeasuredSamples);
    const auto [rms, peak] = vDSP::levels(buffer.samples(), samples);

    const float peakLevel = std::max(peak, state.peakLevel.load() * kPeakDecay);
    const float rmsLevel = state.rmsLevel.load() * kRmsKept + rms * kRmsTaken;
    state.peakLevel.store(peakLevel < kSilentPeak ? 0.0F : peakLevel);
    state.rmsLevel.store(rmsLevel < kSilentRMS ? 0.0F : rmsLevel);

    const std::int32_t silent = state.silentCallbackCount.load();
    state.silentCallbackCount.store(
        peak >= kSilentPeak ? 0 : std::min(silent + 1, kHighestSilentCount));
    return {rms, samples};
}

/// Opens on the first block at or above the threshold, closes when the hold has run out; answers
/// the gain to move towards.
float updateGate(TapState& state, const Levels& levels) noexcept {
    if (levels.rms >= state.noiseGateThresholdLinear.load()) {
        state.gateSilentCount.store(0);
        state.gateOpen.store(true);
        return 1.0F;
    }
    const std::uint64_t silentCount = state.gateSilentCount.load() + levels.samples;
    state.gateSilentCount.store(silentCount);
    if (silentCount >= state.gateHoldSamples)
        state.gateOpen.store(false);
    return state.gateOpen.load() ? 1.0F : 0.0F;
}

/// One step a callback, whatever its length, and one gain for the whole of it.
void applyGate(const Cycle& cycle, const Levels& levels) noexcept {
    TapState& state = cycle.state;
    const float target = updateGate(state, levels);
    float gain = state.gateFadeGain.load();
    gain = gain < target ? std::min(gain + kGateStep, target) : std::max(gain - kGateStep, target);
    state.gateFadeGain.store(gain);
    if (!(gain < kUnityFrom))
        return;
    for (const AudioBuffer& buffer : cycle.out.first(cycle.pairCount))
        if (buffer.mData != nullptr)
            vDSP::vsmul(buffer.samples(), 1, gain, buffer.samples(), 1, buffer.sampleCount());
}

void meterAndGate(const Cycle& cycle) noexcept {
    if (cycle.pairCount == 0 || cycle.out[0].mData == nullptr || cycle.out[0].sampleCount() == 0)
        return;
    const Levels levels = measure(cycle.state, cycle.out[0]);
    if (cycle.state.noiseGateEnabled.load())
        applyGate(cycle, levels);
}

void clearSpareOutputs(const Cycle& cycle) noexcept {
    for (const AudioBuffer& buffer : cycle.out.subspan(cycle.pairCount))
        if (buffer.mData != nullptr)
            std::memset(buffer.mData, 0, buffer.mDataByteSize);
}

void render(const Cycle& cycle) noexcept {
    reportFirstCallback(cycle);
    record(cycle.state.dryRecorder.get(), cycle.in);
    if (!cycle.out.empty())
        cycle.state.diagOutBufSamples.store(static_cast<std::int64_t>(cycle.out[0].sampleCount()));
    renderBuffers(cycle);
    runStereoStage(cycle);
    updateCounters(cycle);
    meterAndGate(cycle);
    record(cycle.state.recorder.get(), cycle.out.first(cycle.pairCount));
    clearSpareOutputs(cycle);
}

std::span<AudioBuffer> buffersOf(const AudioBufferList* list) noexcept {
    return list == nullptr ? std::span<AudioBuffer>{} : list->mBuffers;
}

} // namespace

OSStatus tapRenderCallback(const AudioBufferList* input, AudioBufferList* output,
                           const AudioCallbackRef* clientData) noexcept {
    if (clientData == nullptr)
        return noErr;
    const RealTimeSection realTime;
    const FlushDenormals flush;
    // The cell's own reference keeps the state alive: the cell is freed only after the device has
    // stopped, which waits for this callback. Taking one more here could make this thread the last
    // owner, and an IO thread frees nothing.
    TapState& state = *clientData->state;
    const CallbackEpoch::Callback inCallback(state.epoch);

    const auto in = buffersOf(input);
    const auto out = buffersOf(output);
    const float gain = state.isMuted.load() ? 0.0F : state.volume.load();
    render({state, in, out, std::min(in.size(), out.size()), gain});
    return noErr;
}

OSStatus tapIOProc(AudioObjectID /*device*/, const AudioTimeStamp* /*now*/,
                   const AudioBufferList* input, const AudioTimeStamp* /*inputTime*/,
                   AudioBufferList* output, const AudioTimeStamp* /*outputTime*/,
                   void* clientData) noexcept {
    return tapRenderCallback(input, output, static_cast<const AudioCallbackRef*>(clientData));
}

bool tapIsAtRest(const void* clientData) noexcept {
    return clientData == nullptr ||
           static_cast<const AudioCallbackRef*>(clientData)->state->isAtRest();
}

} // namespace orvanta
