#include "bench/compare/Contender.h"

#include <algorithm>
#include <utility>

namespace orvanta::compare {

Signal processed(Contender& contender, const Signal& signal, std::size_t blockFrames) {
    std::vector<float> left;
    std::vector<float> right;
    for (std::size_t first = 0; first < signal.frames(); first += blockFrames) {
        const std::size_t frames = std::min(blockFrames, signal.frames() - first);
        contender.load(signal, first, frames);
        contender.run(frames);
        contender.appendResult(frames, left, right);
    }
    return {std::move(left), std::move(right)};
}

} // namespace orvanta::compare
