#include "core/engine/DriftRingBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

namespace orvanta {
namespace {

void stopUnless(bool isSound) noexcept {
    if (!isSound)
        std::abort();
}

std::size_t sampleCount(std::int64_t capacity, std::int64_t channels) noexcept {
    stopUnless(capacity >= 0 && channels >= 0);
    stopUnless(channels == 0 || capacity <= std::numeric_limits<std::int64_t>::max() / channels);
    return static_cast<std::size_t>(capacity * channels);
}

} // namespace

DriftRingBuffer::DriftRingBuffer(std::int64_t capacity, std::int64_t channels) noexcept
    : capacity_(capacity),
      channels_(channels),
      buffer_(std::make_unique<Cell<float>[]>(sampleCount(capacity, channels))),
      writePos_(std::make_unique<Position>()),
      readPos_(std::make_unique<Position>()) {}

void DriftRingBuffer::write(const float* frames, std::int64_t frameCount) noexcept {
    stopUnless(frameCount >= 0 && (capacity_ > 0 || frameCount == 0));
    std::int64_t writePosition = writePos_->frame.load(std::memory_order_relaxed);
    std::int64_t readPosition = readPos_->frame.load(std::memory_order_acquire);
    const std::int64_t free = capacity_ - held(writePosition, readPosition) - 1;
    if (frameCount <= std::min(free, capacity_ - writePosition)) {
        put(frames, writePosition, frameCount);
        writePos_->frame.store((writePosition + frameCount) % capacity_, std::memory_order_release);
    } else {
        for (std::int64_t frame = 0; frame < frameCount; ++frame) {
            put(frames + frame * channels_, writePosition, 1);
            writePosition = (writePosition + 1) % capacity_;
            if (writePosition == readPosition) {
                readPosition = (readPosition + 1) % capacity_;
                readPos_->frame.store(readPosition, std::memory_order_release);
            }
        }
        writePos_->frame.store(writePosition, std::memory_order_release);
    }
    totalWritten_.store(totalWritten_.load() + static_cast<std::uint64_t>(frameCount));
}

void DriftRingBuffer::read(float* frames, std::int64_t frameCount) noexcept {
    stopUnless(frameCount >= 0 && (capacity_ > 0 || frameCount == 0));
    std::int64_t readPosition = readPos_->frame.load(std::memory_order_relaxed);
    const std::int64_t writePosition = writePos_->frame.load(std::memory_order_acquire);
    const std::int64_t there = held(writePosition, readPosition);
    const std::int64_t taken = std::min(frameCount, there);
    if (taken >= 1 && taken <= capacity_ - readPosition) {
        take(frames, readPosition, taken);
        std::fill_n(frames + taken * channels_, (frameCount - taken) * channels_, 0.0F);
        readPos_->frame.store((readPosition + taken) % capacity_, std::memory_order_release);
    } else {
        for (std::int64_t frame = 0; frame < frameCount; ++frame) {
            if (readPosition == writePosition) {
                std::fill_n(frames + frame * channels_, channels_, 0.0F);
                continue;
            }
            take(frames + frame * channels_, readPosition, 1);
            readPosition = (readPosition + 1) % capacity_;
        }
        readPos_->frame.store(readPosition, std::memory_order_release);
    }
    totalRead_.store(totalRead_.load() + static_cast<std::uint64_t>(frameCount));
}

std::int64_t DriftRingBuffer::available() const noexcept {
    const std::int64_t writePosition = writePos_->frame.load(std::memory_order_acquire);
    return held(writePosition, readPos_->frame.load(std::memory_order_acquire));
}

std::int64_t DriftRingBuffer::held(std::int64_t writePosition,
                                   std::int64_t readPosition) const noexcept {
    return writePosition < readPosition ? capacity_ - readPosition + writePosition
                                        : writePosition - readPosition;
}

void DriftRingBuffer::put(const float* source, std::int64_t frame,
                          std::int64_t frameCount) noexcept {
    Cell<float>* target = buffer_.get() + frame * channels_;
    for (std::int64_t sample = 0; sample < frameCount * channels_; ++sample)
        target[sample].store(source[sample]);
}

void DriftRingBuffer::take(float* target, std::int64_t frame,
                           std::int64_t frameCount) const noexcept {
    const Cell<float>* source = buffer_.get() + frame * channels_;
    for (std::int64_t sample = 0; sample < frameCount * channels_; ++sample)
        target[sample] = source[sample].load();
}

} // namespace orvanta
