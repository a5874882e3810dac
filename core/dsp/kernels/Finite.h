#pragma once

#include "core/dsp/kernels/Lanes.h"

#include <cfloat>

/// Keeps numbers that are none out of memories and meters.
namespace orvanta {
namespace {

/// The type of the bits of vectors of floats.
template <class Floats>
using BitsOf = Lanes<std::int32_t, static_cast<int>(sizeof(Floats) / sizeof(float))>;

template <class Floats>
ORVANTA_INLINE Floats magnitudes(Floats x) noexcept {
    return bitCast<Floats>(bitCast<BitsOf<Floats>>(x) & 0x7FFFFFFF);
}

/// The same lanes, but 0 for infinities and NaN.
template <class Floats>
ORVANTA_INLINE Floats finiteOnly(Floats x) noexcept {
    constexpr std::int32_t infinity = 0x7F800000;
    return bitCast<Floats>(bitCast<BitsOf<Floats>>(x) &
                           (bitCast<BitsOf<Floats>>(magnitudes(x)) < infinity));
}

ORVANTA_INLINE float finiteOnly(float x) noexcept {
    return __builtin_fabsf(x) <= FLT_MAX ? x : 0.0F;
}

} // namespace
} // namespace orvanta
