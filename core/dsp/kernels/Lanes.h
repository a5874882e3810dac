#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

/// Vectors of numbers that go through one operation together, for the kernels only.
///
/// A kernel's source is compiled once for each instruction set, so whatever it defines must stay
/// inside its object file: everything here and in the kernels is in an unnamed namespace, and
/// nothing there calls an inline function of another header, of the language's library neither. Of
/// a function with external linkage the linker keeps one copy, and it might be the one that the
/// running processor cannot execute. (The compiler's own intrinsics and memcpy of a constant length
/// become instructions and leave no symbol.)
///
/// Plain operators compute per lane exactly what they compute on single numbers.
namespace orvanta {
namespace {

#if defined(__AVX2__)
/// Numbers of 32 bits in the widest register.
constexpr int kLanes = 8;
#else
constexpr int kLanes = 4;
#endif

template <class Number, int count>
struct LanesOf {
    using Type __attribute__((vector_size(count * sizeof(Number)))) = Number;
};

/// `count` numbers; comparisons give `IntLanes` of the same width, all bits set where true.
template <class Number, int count>
using Lanes = typename LanesOf<Number, count>::Type;

using Float4 = Lanes<float, 4>;
using Int4 = Lanes<std::int32_t, 4>;
using Double2 = Lanes<double, 2>;
using Double4 = Lanes<double, 4>;
using FloatLanes = Lanes<float, kLanes>;
using IntLanes = Lanes<std::int32_t, kLanes>;

#define ORVANTA_INLINE __attribute__((always_inline)) inline

template <class Vector, class Number>
ORVANTA_INLINE Vector load(const Number* from) noexcept {
    Vector lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

template <class Vector, class Number>
ORVANTA_INLINE void store(Number* to, Vector lanes) noexcept {
    std::memcpy(to, &lanes, sizeof lanes);
}

/// The same bits as another type of the same size.
template <class To, class From>
ORVANTA_INLINE To bitCast(From from) noexcept {
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

/// Two lanes widened to double precision.
ORVANTA_INLINE Double2 widenLow(Float4 lanes) noexcept {
#if defined(__SSE2__)
    return bitCast<Double2>(_mm_cvtps_pd(bitCast<__m128>(lanes)));
#else
    return Double2{static_cast<double>(lanes[0]), static_cast<double>(lanes[1])};
#endif
}

/// Rounded to single precision into the two low lanes; the two high ones are 0.
ORVANTA_INLINE Float4 narrow(Double2 lanes) noexcept {
#if defined(__SSE2__)
    return bitCast<Float4>(_mm_cvtpd_ps(bitCast<__m128d>(lanes)));
#else
    return Float4{static_cast<float>(lanes[0]), static_cast<float>(lanes[1]), 0.0F, 0.0F};
#endif
}

#if defined(__AVX2__)
// GCC 12 takes conversions of four lanes through memory when they are written without these.
ORVANTA_INLINE Double4 widen(Float4 lanes) noexcept {
    return bitCast<Double4>(_mm256_cvtps_pd(bitCast<__m128>(lanes)));
}

ORVANTA_INLINE Float4 narrow(Double4 lanes) noexcept {
    return bitCast<Float4>(_mm256_cvtpd_ps(bitCast<__m256d>(lanes)));
}
#endif

/// Four records of four numbers become four vectors, of the first numbers, of the second, and so
/// on; and the other way round.
ORVANTA_INLINE void transpose(Float4 (&rows)[4]) noexcept {
    const Float4 low01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
    const Float4 high01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
    const Float4 low23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
    const Float4 high23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
    rows[0] = __builtin_shufflevector(low01, low23, 0, 1, 4, 5);
    rows[1] = __builtin_shufflevector(low01, low23, 2, 3, 6, 7);
    rows[2] = __builtin_shufflevector(high01, high23, 0, 1, 4, 5);
    rows[3] = __builtin_shufflevector(high01, high23, 2, 3, 6, 7);
}

} // namespace
} // namespace orvanta
