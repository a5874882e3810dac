#include "core/dsp/VectorOperations.h"

#include "core/dsp/kernels/Kernels.h"

#include <cfloat>
#include <cmath>

namespace orvanta::vDSP {
namespace {

/// For the rare block whose squares leave the range of single precision.
float rmsInDoublePrecision(const float* a, std::size_t n) noexcept {
    double sum = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const double sample = std::isfinite(a[k]) ? static_cast<double>(a[k]) : 0.0;
        sum += sample * sample;
    }
    return static_cast<float>(std::sqrt(sum / static_cast<double>(n)));
}

} // namespace

void vsmul(const float* a, std::ptrdiff_t sa, float scalar, float* c, std::ptrdiff_t sc,
           std::size_t n) noexcept {
    if (sa == 1 && sc == 1) {
        kernels().level.scale(a, scalar, c, n);
        return;
    }
    for (std::size_t k = 0; k < n; ++k, a += sa, c += sc)
        *c = *a * scalar;
}

void copyFinite(const float* a, float* c, std::size_t n) noexcept {
    kernels().level.copyFinite(a, c, n);
}

Levels levels(const float* a, std::size_t n) noexcept {
    if (n == 0)
        return {};
    const LevelSums sums = kernels().level.measure(a, n);
    const float rms = sums.squares <= FLT_MAX ? std::sqrt(sums.squares / static_cast<float>(n))
                                              : rmsInDoublePrecision(a, n);
    return {.rms = rms, .peak = sums.peak};
}

float maxmgv(const float* a, std::size_t n) noexcept {
    return levels(a, n).peak;
}

} // namespace orvanta::vDSP
