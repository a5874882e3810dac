#pragma once

#include "core/dsp/kernels/Log2Exp2.h"

/// Several vectors that take the same way through a long calculation. Each operation is done for
/// all of them before the next, so the processor always has independent work at hand: one vector
/// alone spends its time waiting for its own last result, and the next one's instructions are too
/// far away to be seen.
namespace orvanta {
namespace {

template <class Vector, std::size_t count>
struct LaneGroup {
    Vector of[count];
};

template <std::size_t count>
using FloatGroup = LaneGroup<FloatLanes, count>;
template <std::size_t count>
using IntGroup = LaneGroup<IntLanes, count>;

/// What stands for vector `k` of a group: its own, or the same for all.
template <class Vector, std::size_t count>
ORVANTA_INLINE Vector vectorOf(const LaneGroup<Vector, count>& group, std::size_t k) noexcept {
    return group.of[k];
}

ORVANTA_INLINE FloatLanes vectorOf(FloatLanes lanes, std::size_t) noexcept {
    return lanes;
}

ORVANTA_INLINE FloatLanes vectorOf(float number, std::size_t) noexcept {
    return FloatLanes{} + number;
}

ORVANTA_INLINE IntLanes vectorOf(int number, std::size_t) noexcept {
    return IntLanes{} + number;
}

// On the right side there may be a group, a vector or a number.
#define ORVANTA_GROUP_OPERATOR(OPERATOR)                                                           \
    template <class Vector, std::size_t count, class Other>                                        \
    ORVANTA_INLINE auto operator OPERATOR(const LaneGroup<Vector, count>& a,                       \
                                          const Other& b) noexcept {                               \
        LaneGroup<decltype(a.of[0] OPERATOR vectorOf(b, 0)), count> result;                        \
        for (std::size_t k = 0; k < count; ++k)                                                    \
            result.of[k] = a.of[k] OPERATOR vectorOf(b, k);                                        \
        return result;                                                                             \
    }

ORVANTA_GROUP_OPERATOR(+)
ORVANTA_GROUP_OPERATOR(-)
ORVANTA_GROUP_OPERATOR(*)
ORVANTA_GROUP_OPERATOR(/)
ORVANTA_GROUP_OPERATOR(<)
ORVANTA_GROUP_OPERATOR(>)
ORVANTA_GROUP_OPERATOR(<<)
ORVANTA_GROUP_OPERATOR(>>)
#undef ORVANTA_GROUP_OPERATOR

template <std::size_t count>
ORVANTA_INLINE IntGroup<count> asIntegers(const FloatGroup<count>& numbers) noexcept {
    IntGroup<count> result;
    for (std::size_t k = 0; k < count; ++k)
        result.of[k] = asIntegers(numbers.of[k]);
    return result;
}

template <std::size_t count>
ORVANTA_INLINE FloatGroup<count> asFloats(const IntGroup<count>& bits) noexcept {
    FloatGroup<count> result;
    for (std::size_t k = 0; k < count; ++k)
        result.of[k] = asFloats(bits.of[k]);
    return result;
}

template <std::size_t count>
ORVANTA_INLINE FloatGroup<count> converted(const IntGroup<count>& numbers) noexcept {
    FloatGroup<count> result;
    for (std::size_t k = 0; k < count; ++k)
        result.of[k] = converted(numbers.of[k]);
    return result;
}

template <std::size_t count, class Yes, class No>
ORVANTA_INLINE FloatGroup<count> choose(const IntGroup<count>& condition, const Yes& yes,
                                        const No& no) noexcept {
    FloatGroup<count> result;
    for (std::size_t k = 0; k < count; ++k)
        result.of[k] = choose(condition.of[k], vectorOf(yes, k), vectorOf(no, k));
    return result;
}

} // namespace
} // namespace orvanta
