#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvanta {

/// A delay of whole samples that is read and written in long straight runs, so that loops over it
/// need no wrapping: the samples move back to the front only when the room behind them is used up.
class DelayLine {
public:
    explicit DelayLine(std::size_t delay)
        : delay_(delay),
          longestRun_(std::max(delay, kShortestRoom)),
          samples_(delay + longestRun_) {}

    [[nodiscard]] std::size_t delay() const noexcept { return delay_; }

    /// The most samples that one run may have.
    [[nodiscard]] std::size_t longestRun() const noexcept { return longestRun_; }

    /// Goes `count` samples forward. At the answer stand the `count` delayed samples, oldest first,
    /// and `delay()` places further on the caller has to write the `count` new ones, from front to
    /// back and each before the delayed sample of the same place is read.
    [[nodiscard]] float* nextRun(std::size_t count) noexcept {
        if (position_ + count > longestRun_) {
            std::copy_n(samples_.data() + position_, delay_, samples_.data());
            position_ = 0;
        }
        float* const run = samples_.data() + position_;
        position_ += count;
        return run;
    }

    void clear() noexcept { std::fill(samples_.begin(), samples_.end(), 0.0F); }

private:
    static constexpr std::size_t kShortestRoom = 512;

    std::size_t delay_;
    std::size_t longestRun_;
    std::size_t position_ = 0;
    std::vector<float> samples_;
};

} // namespace orvanta
