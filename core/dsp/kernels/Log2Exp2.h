#pragma once

#include "core/dsp/kernels/Lanes.h"

/// Binary logarithm and power in a few plain float operations, the same ones for a single number,
/// for lanes and for groups of lanes: the C library's would be another function for each machine,
/// and one number at a time. Both stay within 1e-6 of the C library's, relatively.
namespace orvanta {
namespace {

ORVANTA_INLINE std::int32_t asIntegers(float number) noexcept {
    return bitCast<std::int32_t>(number);
}

ORVANTA_INLINE float asFloats(std::int32_t bits) noexcept {
    return bitCast<float>(bits);
}

ORVANTA_INLINE float converted(std::int32_t number) noexcept {
    return static_cast<float>(number);
}

ORVANTA_INLINE float choose(bool condition, float yes, float no) noexcept {
    return condition ? yes : no;
}

ORVANTA_INLINE IntLanes asIntegers(FloatLanes numbers) noexcept {
    return bitCast<IntLanes>(numbers);
}

ORVANTA_INLINE FloatLanes asFloats(IntLanes bits) noexcept {
    return bitCast<FloatLanes>(bits);
}

ORVANTA_INLINE FloatLanes converted(IntLanes numbers) noexcept {
    return __builtin_convertvector(numbers, FloatLanes);
}

ORVANTA_INLINE FloatLanes choose(IntLanes condition, FloatLanes yes, FloatLanes no) noexcept {
    return condition ? yes : no;
}

ORVANTA_INLINE FloatLanes choose(IntLanes condition, FloatLanes yes, float no) noexcept {
    return condition ? yes : FloatLanes{} + no;
}

constexpr int kMantissaBits = 23;

/// For normal numbers above 0. Infinity counts as 2^128.
///
/// With x = m * 2^e, m between sqrt(1/2) and sqrt(2), log2(x) = e + log2((1 + s) / (1 - s)) where
/// s = (m - 1) / (m + 1): an odd series in s, the coefficients fitted for the least relative error.
template <class Floats>
ORVANTA_INLINE Floats log2Of(Floats x) noexcept {
    constexpr std::int32_t kBitsOfSqrtHalf = 0x3f3504f3;
    const auto bits = asIntegers(x);
    const auto exponent = (bits - kBitsOfSqrtHalf) >> kMantissaBits;
    const Floats mantissa = asFloats(bits - (exponent << kMantissaBits));
    const Floats s = (mantissa - 1.0F) / (mantissa + 1.0F);
    const Floats z = s * s;
    const Floats series =
        (z * 0.480101943F + 0.574598193F) * (z * z) + (z * 0.961821854F + 2.88539004F);
    return converted(exponent) + s * series;
}

/// For numbers up to 126; exactly 1 for 0. Below -126, and for what is no number, the result stays
/// at 2^-126.
///
/// 2^x = 2^k * 2^f with k the nearest integer, and a polynomial in f, fitted for the least relative
/// error with the 1 held fast.
template <class Floats>
ORVANTA_INLINE Floats exp2Of(Floats x) noexcept {
    // Adding it leaves the nearest integer in the low bits of the mantissa.
    constexpr float kRounder = 12582912.0F;
    constexpr std::int32_t kBitsOfRounder = 0x4b400000;
    const Floats exponent = choose(x > -126.0F, x, -126.0F);
    const Floats rounded = exponent + kRounder;
    const auto power = (asIntegers(rounded) - kBitsOfRounder) << kMantissaBits;
    const Floats f = exponent - (rounded - kRounder);
    const Floats square = f * f;
    const Floats high =
        (f * 0.000153264715F + 0.00133908063F) * square + (f * 0.00961850584F + 0.0555035993F);
    const Floats low = square * 0.240226477F + (f * 0.693147182F + 1.0F);
    return asFloats(asIntegers(high * (square * f) + low) + power);
}

} // namespace
} // namespace orvanta
