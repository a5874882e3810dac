#pragma once

#include <cstdint>

namespace orvanta::embedded {

/// The clock of one device: counts whole frames from an origin, so that no rounding adds up.
/// Times are nanoseconds of the clock that drives the server.
class Timeline {
public:
    Timeline(std::uint64_t originNs, double sampleRate)
        : originNs_(originNs), sampleRate_(sampleRate) {}

    /// When the next cycle begins, and when one of that many frames ends.
    [[nodiscard]] std::uint64_t nextStart() const noexcept { return timeAt(frames_); }

    [[nodiscard]] std::uint64_t nextEnd(std::uint32_t frames) const noexcept {
        return timeAt(frames_ + frames);
    }

    /// Frames since the device came, those it slept through included.
    [[nodiscard]] std::uint64_t sampleTime() const noexcept { return framesBefore_ + frames_; }

    void advance(std::uint64_t frames) noexcept { frames_ += frames; }

    /// Passes over the whole frames up to this time, of which nothing was played.
    void skipTo(std::uint64_t timeNs) noexcept {
        const std::uint64_t start = nextStart();
        if (timeNs > start)
            advance(static_cast<std::uint64_t>(static_cast<double>(timeNs - start) * sampleRate_ /
                                               1e9));
    }

    void setSampleRate(double sampleRate) noexcept {
        if (sampleRate == sampleRate_)
            return;
        rebase(nextStart());
        sampleRate_ = sampleRate;
    }

    /// The next cycle begins at this time, whatever was planned: the driving clock is another.
    void rebase(std::uint64_t originNs) noexcept {
        framesBefore_ += frames_;
        frames_ = 0;
        originNs_ = originNs;
    }

private:
    [[nodiscard]] std::uint64_t timeAt(std::uint64_t frames) const noexcept {
        return originNs_ + static_cast<std::uint64_t>(static_cast<long double>(frames) * 1e9L /
                                                      static_cast<long double>(sampleRate_));
    }

    std::uint64_t originNs_;
    double sampleRate_;
    std::uint64_t frames_ = 0;
    std::uint64_t framesBefore_ = 0;
};

} // namespace orvanta::embedded
