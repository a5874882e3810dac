#include "core/dsp/VectorOperations.h"

#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace orvanta::vDSP {
namespace {

constexpr std::size_t kLaneCount = 4;
using Lanes __attribute__((vector_size(kLaneCount * sizeof(float)))) = float;
using LaneBits __attribute__((vector_size(kLaneCount * sizeof(float)))) = std::int32_t;

Lanes loaded(const float* from) noexcept {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

LaneBits bits(Lanes lanes) noexcept {
    return std::bit_cast<LaneBits>(lanes);
}

Lanes lanesOf(LaneBits pattern) noexcept {
    return std::bit_cast<Lanes>(pattern);
}

/// Absolute values; infinities and NaN become 0.
Lanes finiteMagnitudes(Lanes x) noexcept {
    const LaneBits magnitude = bits(x) & 0x7FFFFFFF;
    const LaneBits isFinite = lanesOf(magnitude) <= FLT_MAX;
    return lanesOf(magnitude & isFinite);
}

Lanes larger(Lanes a, Lanes b) noexcept {
    const LaneBits takeA = a > b;
    return lanesOf((bits(a) & takeA) | (bits(b) & ~takeA));
}

float finiteMagnitude(float x) noexcept {
    const float magnitude = std::fabs(x);
    return magnitude <= FLT_MAX ? magnitude : 0.0F;
}

/// The same lanes, but 0 for infinities and NaN.
Lanes finiteOnly(Lanes x) noexcept {
    const LaneBits isFinite = lanesOf(bits(x) & 0x7FFFFFFF) <= FLT_MAX;
    return lanesOf(bits(x) & isFinite);
}

/// For the rare block whose squares leave the range of single precision.
float rmsInDoublePrecision(const float* a, std::size_t n) noexcept {
    double sum = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const auto magnitude = static_cast<double>(finiteMagnitude(a[k]));
        sum += magnitude * magnitude;
    }
    return static_cast<float>(std::sqrt(sum / static_cast<double>(n)));
}

} // namespace

void vsmul(const float* a, std::ptrdiff_t sa, float scalar, float* c, std::ptrdiff_t sc,
           std::size_t n) noexcept {
    if (sa == 1 && sc == 1) {
        for (std::size_t k = 0; k < n; ++k)
            c[k] = a[k] * scalar;
        return;
    }
    for (std::size_t k = 0; k < n; ++k, a += sa, c += sc)
        *c = *a * scalar;
}

void vsma(const float* a, std::ptrdiff_t sa, float scalar, const float* b, std::ptrdiff_t sb,
          float* c, std::ptrdiff_t sc, std::size_t n) noexcept {
    for (std::size_t k = 0; k < n; ++k, a += sa, b += sb, c += sc)
        *c = *a * scalar + *b;
}

void vadd(const float* a, std::ptrdiff_t sa, const float* b, std::ptrdiff_t sb, float* c,
          std::ptrdiff_t sc, std::size_t n) noexcept {
    for (std::size_t k = 0; k < n; ++k, a += sa, b += sb, c += sc)
        *c = *a + *b;
}

void copyFinite(const float* a, float* c, std::size_t n) noexcept {
    std::size_t k = 0;
    for (; k + kLaneCount <= n; k += kLaneCount) {
        const Lanes lanes = finiteOnly(loaded(a + k));
        std::memcpy(c + k, &lanes, sizeof lanes);
    }
    for (; k < n; ++k)
        c[k] = std::isfinite(a[k]) ? a[k] : 0.0F;
}

float maxmgv(const float* a, std::size_t n) noexcept {
    std::array<Lanes, 4> largest{};
    std::size_t k = 0;
    for (; k + kLaneCount * largest.size() <= n; k += kLaneCount * largest.size())
        for (std::size_t v = 0; v < largest.size(); ++v)
            largest[v] = larger(finiteMagnitudes(loaded(a + k + v * kLaneCount)), largest[v]);
    const Lanes lanes = larger(larger(largest[0], largest[1]), larger(largest[2], largest[3]));
    float result = 0;
    for (std::size_t lane = 0; lane < kLaneCount; ++lane)
        result = lanes[lane] > result ? lanes[lane] : result;
    for (; k < n; ++k) {
        const float magnitude = finiteMagnitude(a[k]);
        result = magnitude > result ? magnitude : result;
    }
    return result;
}

float rmsqv(const float* a, std::size_t n) noexcept {
    if (n == 0)
        return 0;
    std::array<Lanes, 4> sums{};
    std::size_t k = 0;
    for (; k + kLaneCount * sums.size() <= n; k += kLaneCount * sums.size())
        for (std::size_t v = 0; v < sums.size(); ++v) {
            const Lanes magnitudes = finiteMagnitudes(loaded(a + k + v * kLaneCount));
            sums[v] += magnitudes * magnitudes;
        }
    const Lanes lanes = (sums[0] + sums[1]) + (sums[2] + sums[3]);
    float sum = 0;
    for (std::size_t lane = 0; lane < kLaneCount; ++lane)
        sum += lanes[lane];
    for (; k < n; ++k) {
        const float magnitude = finiteMagnitude(a[k]);
        sum += magnitude * magnitude;
    }
    if (!(sum <= FLT_MAX))
        return rmsInDoublePrecision(a, n);
    return std::sqrt(sum / static_cast<float>(n));
}

} // namespace orvanta::vDSP
