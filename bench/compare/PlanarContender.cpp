#include "bench/compare/PlanarContender.h"

#include <algorithm>

namespace orvanta::compare {

void PlanarContender::load(const Signal& signal, std::size_t first, std::size_t frames) noexcept {
    std::copy_n(signal.left() + first, frames, input_.left.data());
    std::copy_n(signal.right() + first, frames, input_.right.data());
}

void PlanarContender::appendResult(std::size_t frames, std::vector<float>& left,
                                   std::vector<float>& right) const {
    const StereoBlock& result = output();
    left.insert(left.end(), result.left.begin(),
                result.left.begin() + static_cast<std::ptrdiff_t>(frames));
    right.insert(right.end(), result.right.begin(),
                 result.right.begin() + static_cast<std::ptrdiff_t>(frames));
}

} // namespace orvanta::compare
