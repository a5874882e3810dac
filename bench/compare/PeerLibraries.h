#pragma once

#include "bench/compare/StereoBlock.h"

#include <bs2b.h>
#include <ebur128.h>

#include <cstddef>
#include <memory>

namespace orvanta::compare {

/// libbs2b at our crossfeed's cutoff.
class Bs2b {
public:
    Bs2b();

    void process(float* interleaved, std::size_t frames) noexcept {
        bs2b_cross_feed_f(state_.get(), interleaved, static_cast<int>(frames));
    }

private:
    struct Close {
        void operator()(t_bs2bdp state) const noexcept { bs2b_close(state); }
    };

    std::unique_ptr<t_bs2bd, Close> state_;
};

/// libebur128 measuring one channel's momentary loudness and nothing else.
class Ebur128 {
public:
    Ebur128();

    void process(const float* samples, std::size_t frames) noexcept;

    /// LUFS, as of the last full 400 ms.
    [[nodiscard]] double loudness() const noexcept { return loudness_; }

private:
    struct Close {
        void operator()(ebur128_state* state) const noexcept { ebur128_destroy(&state); }
    };

    std::unique_ptr<ebur128_state, Close> state_;
    std::size_t framesSinceReading_ = 0;
    double loudness_ = 0.0;
};

} // namespace orvanta::compare
