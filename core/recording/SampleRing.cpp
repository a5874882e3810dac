#include "core/recording/SampleRing.h"

#include <algorithm>

namespace orvanta {
namespace {

/// Two channels at 192 kHz would run for 23 years before they meet the upper bits.
constexpr int kCounterBits = 48;
constexpr std::uint64_t kCounterMask = (std::uint64_t{1} << kCounterBits) - 1;

std::int64_t countOf(std::uint64_t head) noexcept {
    return static_cast<std::int64_t>(head & kCounterMask);
}

void scatter(const float* samples, std::int64_t count, float* places,
             std::int64_t stride) noexcept {
    for (std::int64_t i = 0; i < count; ++i)
        places[i * stride] = samples[i];
}

void gather(const float* places, std::int64_t count, float* samples, std::int64_t stride) noexcept {
    for (std::int64_t i = 0; i < count; ++i)
        samples[i] = places[i * stride];
}

} // namespace

SampleRing::SampleRing(int channels)
    : channels_(channels), ringBuffer_(std::make_unique<float[]>(bufferCapacity)) {}

void SampleRing::writeSamples(const float* samples, std::int64_t count,
                              std::int64_t channel) noexcept {
    if (channel < 0 || channel >= channels_)
        return;
    const std::int64_t total = count * channels_;
    const Head head = head_.load(std::memory_order_acquire);
    beginOrContinueBlock(head, total, channel);
    const bool isLast = channel == channels_ - 1;
    if (isLast)
        block_.channel = -1;
    if (!block_.fits)
        return;
    const std::int64_t start = countOf(head) + channel;
    const std::int64_t untilEnd = std::min(framesUntilEnd(start), count);
    scatter(samples, untilEnd, place(start), channels_);
    scatter(samples + untilEnd, count - untilEnd, place(start + untilEnd * channels_), channels_);
    if (isLast)
        publish(head, total);
}

void SampleRing::beginOrContinueBlock(Head head, std::int64_t total,
                                      std::int64_t channel) noexcept {
    const bool begins = block_.channel < 0 || channel <= block_.channel;
    if (begins) {
        block_ = {head, channel, total, hasRoom(head, total)};
        if (block_.fits)
            silence(countOf(head), total, channel);
        return;
    }
    // The first channels of a block from before a clearing are lost, and the rest goes with them.
    if (block_.head != head || (total > block_.total && !hasRoom(head, total)))
        block_.fits = false;
    block_.channel = channel;
}

void SampleRing::silence(std::int64_t start, std::int64_t total, std::int64_t channels) noexcept {
    for (std::int64_t channel = 0; channel < channels; ++channel)
        for (std::int64_t at = channel; at < total; at += channels_)
            *place(start + at) = 0.0F;
}

void SampleRing::writeInterleavedSamples(const float* samples, std::int64_t total) noexcept {
    const Head head = head_.load(std::memory_order_acquire);
    if (!hasRoom(head, total))
        return;
    const std::int64_t start = countOf(head);
    const std::int64_t untilEnd = std::min(bufferCapacity - (start & bufferMask), total);
    std::copy_n(samples, untilEnd, place(start));
    std::copy_n(samples + untilEnd, total - untilEnd, ringBuffer_.get());
    publish(head, total);
}

std::int64_t SampleRing::usedFrames() const noexcept {
    const std::int64_t head = countOf(head_.load(std::memory_order_acquire));
    return (head - tail_.load(std::memory_order_relaxed)) / channels_;
}

void SampleRing::copyChannel(int channel, std::int64_t frames, float* samples) const noexcept {
    const std::int64_t start = tail_.load(std::memory_order_relaxed) + channel;
    const std::int64_t untilEnd = std::min(framesUntilEnd(start), frames);
    gather(place(start), untilEnd, samples, channels_);
    gather(place(start + untilEnd * channels_), frames - untilEnd, samples + untilEnd, channels_);
}

void SampleRing::consume(std::int64_t frames) noexcept {
    const std::int64_t tail = tail_.load(std::memory_order_relaxed);
    tail_.store(tail + frames * channels_, std::memory_order_release);
}

void SampleRing::clear() noexcept {
    tail_.store(0, std::memory_order_relaxed);
    const Head clearing = head_.load(std::memory_order_relaxed) >> kCounterBits;
    head_.store((clearing + 1) << kCounterBits, std::memory_order_release);
}

bool SampleRing::hasRoom(Head head, std::int64_t total) const noexcept {
    const std::int64_t used = countOf(head) - tail_.load(std::memory_order_acquire);
    return bufferCapacity - used >= total;
}

void SampleRing::publish(Head head, std::int64_t total) noexcept {
    const Head next = head + static_cast<Head>(total);
    head_.compare_exchange_strong(head, next, std::memory_order_release, std::memory_order_relaxed);
}

std::int64_t SampleRing::framesUntilEnd(std::int64_t position) const noexcept {
    return (bufferCapacity - (position & bufferMask) + channels_ - 1) / channels_;
}

float* SampleRing::place(std::int64_t position) const noexcept {
    return &ringBuffer_[static_cast<std::size_t>(position & bufferMask)];
}

} // namespace orvanta
