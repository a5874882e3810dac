#pragma once

#include <cstddef>

/// Operations on vectors of 32-bit floats. A stride counts elements; `c` may be one of the inputs.
/// Everything here is safe on an IO thread.
namespace orvanta::vDSP {

/// c[k*sc] = a[k*sa] * scalar for k in 0 ..< n.
void vsmul(const float* a, std::ptrdiff_t sa, float scalar, float* c, std::ptrdiff_t sc,
           std::size_t n) noexcept;

/// c[k] = a[k], but 0 for elements that are no finite number. `c` may be `a`, but not overlap it in
/// part.
void copyFinite(const float* a, float* c, std::size_t n) noexcept;

/// The largest absolute value of n adjacent elements, 0 for none. Elements that are no finite
/// number count as 0, so that one bad sample of a program cannot live on in a meter.
float maxmgv(const float* a, std::size_t n) noexcept;

struct Levels {
    float rms = 0.0F;
    float peak = 0.0F;
};

/// The square root of the mean of the squares of n adjacent elements, and their `maxmgv`, in one
/// pass; 0 for none. Elements that are no finite number count as 0; the result is finite for every
/// input. The sum is made of sixteen partial sums, so its last bits differ from a sum from left to
/// right, but on no machine from those on another.
Levels levels(const float* a, std::size_t n) noexcept;

} // namespace orvanta::vDSP
