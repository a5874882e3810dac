#include "bench/compare/OurProcessors.h"

#include "bench/compare/PlanarContender.h"
#include "core/dsp/LimiterProcessor.h"

namespace orvanta::compare {
namespace {

class OurLimiter final : public PlanarContender {
public:
    explicit OurLimiter(double ceilingDB) : limiter_(kSampleRate, 2) {
        limiter_.setCeiling(static_cast<float>(ceilingDB));
    }

    void run(std::size_t frames) noexcept override {
        limiter_.process(input().left, frames, 0);
        limiter_.process(input().right, frames, 1);
    }

private:
    LimiterProcessor limiter_;
};

} // namespace

std::vector<OurContender> ourLimiters(double ceilingDB) {
    return {{"ours", [ceilingDB](std::size_t /*maxFrames*/) {
                 return std::make_unique<OurLimiter>(ceilingDB);
             }}};
}

} // namespace orvanta::compare
