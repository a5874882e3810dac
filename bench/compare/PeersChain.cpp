#include "bench/compare/PeerLibraries.h"
#include "bench/compare/Peers.h"

namespace orvanta::compare {
namespace {

class PeersChain final : public Contender {
public:
    PeersChain(Lv2World& world, const Lv2Factory& eq, const Lv2Factory& compressor,
               const Lv2Factory& limiter, std::size_t maxFrames)
        : eq_(eq(world, maxFrames)),
          compressor_(compressor(world, maxFrames)),
          limiter_(limiter(world, maxFrames)) {
        compressor_->follow(*eq_);
        limiter_->follow(*compressor_);
    }

    void load(const Signal& signal, std::size_t first, std::size_t frames) noexcept override {
        eq_->load(signal, first, frames);
    }

    void run(std::size_t frames) noexcept override {
        eq_->run(frames);
        compressor_->run(frames);
        limiter_->run(frames);
        const StereoBlock& limited = limiter_->output();
        meter_.process(limited.left.data(), frames);
        for (std::size_t k = 0; k < frames; ++k) {
            interleaved_.left[2 * k] = limited.left[k];
            interleaved_.left[2 * k + 1] = limited.right[k];
        }
        crossfeed_.process(interleaved_.left.data(), frames);
    }

    void appendResult(std::size_t frames, std::vector<float>& left,
                      std::vector<float>& right) const override {
        for (std::size_t k = 0; k < frames; ++k) {
            left.push_back(interleaved_.left[2 * k]);
            right.push_back(interleaved_.left[2 * k + 1]);
        }
    }

    [[nodiscard]] std::optional<double> loudness() const override { return meter_.loudness(); }

private:
    std::unique_ptr<Lv2Contender> eq_;
    std::unique_ptr<Lv2Contender> compressor_;
    std::unique_ptr<Lv2Contender> limiter_;
    Ebur128 meter_;
    StereoBlock interleaved_;
    Bs2b crossfeed_;
};

} // namespace

std::unique_ptr<Contender> peersChain(Lv2World& world, const Lv2Factory& eq,
                                      const Lv2Factory& compressor, const Lv2Factory& limiter,
                                      std::size_t maxFrames) {
    return std::make_unique<PeersChain>(world, eq, compressor, limiter, maxFrames);
}

} // namespace orvanta::compare
