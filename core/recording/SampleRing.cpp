#include "core/recording/SampleRing.h"

#include <algorithm>
#include <utility>

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
    : channels_(channels), ringBuffer_(std::make_unique_for_overwrite<float[]>(bufferCapacity)) {}

void SampleRing::takeMemory() noexcept {
    // Once: a producer of an earlier recording may be late still.
    if (!std::exchange(hasMemory_, true))
        std::fill_n(ringBuffer_.get(), bufferCapacity, 0.0F);
}

void SampleRing::writeSamples(const float* samples, std::int64_t count,
                              std::int64_t channel) noexcept {
    if (channel < 0 || channel >= channels_)
        return;
    const std::int64_t total = count * channels_;
    const Head head = head_.load(std::memory_order_acquire);
    beginOrContinueBlock(head, total, channel);
    block_.channel = lastOf(channel);
    if (!block_.fits)
        return;
    const std::int64_t start = countOf(head) + channel;
    const std::int64_t untilEnd = std::min(framesUntilEnd(start), count);
    scatter(samples, untilEnd, place(start), channels_);
    scatter(samples + untilEnd, count - untilEnd, place(start + untilEnd * channels_), channels_);
    if (channel == channels_ - 1)
        publish(head, total);
}

void SampleRing::passOver(std::int64_t channel) noexcept {
    if (channel >= 0 && channel < channels_)
        block_ = {head_.load(std::memory_order_relaxed), lastOf(channel), 0, false};
}

void SampleRing::beginOrContinueBlock(Head head, std::int64_t total,
                                      std::int64_t channel) noexcept {
    const bool begins = block_.channel < 0 || channel <= block_.channel;
    if (begins) {
        block_ = {head, -1, total, hasRoom(head, total)};
    } else if (block_.head != head || (total > block_.total && !hasRoom(head, total))) {
        // The first channels of a block from before a clearing are lost; the rest goes with them.
        block_.fits = false;
    }
    if (!block_.fits)
        return;
    // What nobody gives is silence, and not what was there a round ago.
    silence(head, {block_.channel + 1, channel}, {0, total});
    silence(head, {0, block_.channel + 1}, {block_.total, total});
    block_.total = std::max(block_.total, total);
}

void SampleRing::silence(Head head, Range channels, Range samples) noexcept {
    for (std::int64_t at = samples.from; at < samples.to; at += channels_)
        for (std::int64_t channel = channels.from; channel < channels.to; ++channel)
            *place(countOf(head) + at + channel) = 0.0F;
}

std::int64_t SampleRing::lastOf(std::int64_t channel) const noexcept {
    return channel == channels_ - 1 ? -1 : channel;
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
