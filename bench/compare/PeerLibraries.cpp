#include "bench/compare/PeerLibraries.h"

#include "bench/compare/Peers.h"
#include "bench/compare/Settings.h"
#include "bench/compare/Signals.h"

#include <algorithm>
#include <stdexcept>

namespace orvanta::compare {

Bs2b::Bs2b() : state_(bs2b_open()) {
    if (!state_)
        throw std::runtime_error("libbs2b does not start");
    constexpr int feed = 45; // tenths of a dB; the library's own default
    bs2b_set_srate(state_.get(), static_cast<std::uint32_t>(kSampleRate));
    bs2b_set_level_fcut(state_.get(), kCrossfeedCutoff);
    bs2b_set_level_feed(state_.get(), feed);
}

Ebur128::Ebur128()
    : state_(ebur128_init(1, static_cast<unsigned long>(kSampleRate), EBUR128_MODE_M)) {
    if (!state_)
        throw std::runtime_error("libebur128 does not start");
}

void Ebur128::process(const float* samples, std::size_t frames) noexcept {
    ebur128_add_frames_float(state_.get(), samples, frames);
    framesSinceReading_ += frames;
    if (framesSinceReading_ >= kLoudnessFrames) {
        framesSinceReading_ = 0;
        ebur128_loudness_momentary(state_.get(), &loudness_);
    }
}

namespace {

class Bs2bContender final : public Contender {
public:
    void load(const Signal& signal, std::size_t first, std::size_t frames) noexcept override {
        std::copy_n(signal.interleaved() + 2 * first, 2 * frames, block_.left.data());
    }

    void run(std::size_t frames) noexcept override { bs2b_.process(block_.left.data(), frames); }

    void appendResult(std::size_t frames, std::vector<float>& left,
                      std::vector<float>& right) const override {
        for (std::size_t k = 0; k < frames; ++k) {
            left.push_back(block_.left[2 * k]);
            right.push_back(block_.left[2 * k + 1]);
        }
    }

private:
    Bs2b bs2b_;
    StereoBlock block_;
};

class Ebur128Contender final : public PlanarContender {
public:
    void run(std::size_t frames) noexcept override { meter_.process(input().left, frames); }

    [[nodiscard]] std::optional<double> loudness() const override { return meter_.loudness(); }

private:
    Ebur128 meter_;
};

} // namespace

std::unique_ptr<Contender> bs2bCrossfeed() {
    return std::make_unique<Bs2bContender>();
}

std::unique_ptr<Contender> ebur128Meter() {
    return std::make_unique<Ebur128Contender>();
}

} // namespace orvanta::compare
