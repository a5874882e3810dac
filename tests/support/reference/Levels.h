#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta::reference {

/// The largest magnitude, passing over what is no finite number.
inline float peak(const std::vector<float>& samples) {
    float peak = 0.0F;
    for (const float sample : samples)
        if (std::isfinite(sample))
            peak = std::max(peak, std::fabs(sample));
    return peak;
}

/// The sum of squares in the order of summation that the kernels promise.
inline float sumOfSquares(const std::vector<float>& samples) {
    const auto squareAt = [&](std::size_t k) {
        const float sample = std::isfinite(samples[k]) ? samples[k] : 0.0F;
        return sample * sample;
    };
    const std::size_t whole = samples.size() / 16 * 16;
    std::array<float, 16> sums{};
    for (std::size_t k = 0; k < whole; ++k)
        sums[k % 16] += squareAt(k);
    float sum = 0.0F;
    for (std::size_t k = 0; k < 4; ++k)
        sum += (sums[k] + sums[k + 4]) + (sums[k + 8] + sums[k + 12]);
    for (std::size_t k = whole; k < samples.size(); ++k)
        sum += squareAt(k);
    return sum;
}

/// As long as the sum of squares is a finite number.
inline float rms(const std::vector<float>& samples) {
    return samples.empty() ? 0.0F
                           : std::sqrt(sumOfSquares(samples) / static_cast<float>(samples.size()));
}

} // namespace orvanta::reference
