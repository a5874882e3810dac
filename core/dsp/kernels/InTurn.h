#pragma once

#include "core/dsp/kernels/Lanes.h"

/// Recurrences along time. Samples arrive and leave as vectors of four in a row, while the
/// recurrence itself takes them one after the other; of a pair of channels both go side by side.
namespace orvanta {
namespace {

/// Four frames of two channels: {L0, R0, L1, R1} and {L2, R2, L3, R3}.
struct FourFrames {
    Float4 early;
    Float4 late;
};

ORVANTA_INLINE FourFrames interleaved(Float4 left, Float4 right) noexcept {
    return {__builtin_shufflevector(left, right, 0, 4, 1, 5),
            __builtin_shufflevector(left, right, 2, 6, 3, 7)};
}

ORVANTA_INLINE Float4 leftOf(const FourFrames& frames) noexcept {
    return __builtin_shufflevector(frames.early, frames.late, 0, 2, 4, 6);
}

ORVANTA_INLINE Float4 rightOf(const FourFrames& frames) noexcept {
    return __builtin_shufflevector(frames.early, frames.late, 1, 3, 5, 7);
}

/// `next(state, input)` for one frame after the other. Lanes 0 and 1 of `state` hold the left and
/// the right channel; what stands in the others means nothing.
template <class Next>
ORVANTA_INLINE FourFrames inTurn(const Next& next, Float4& state,
                                 const FourFrames& input) noexcept {
    const Float4 first = next(state, input.early);
    const Float4 second =
        next(first, __builtin_shufflevector(input.early, input.early, 2, 3, 2, 3));
    const Float4 third = next(second, input.late);
    const Float4 fourth = next(third, __builtin_shufflevector(input.late, input.late, 2, 3, 2, 3));
    state = fourth;
    return {__builtin_shufflevector(first, second, 0, 1, 4, 5),
            __builtin_shufflevector(third, fourth, 0, 1, 4, 5)};
}

/// The same for four samples of one channel, in lane 0 of `state`.
template <class Next>
ORVANTA_INLINE Float4 inTurn(const Next& next, Float4& state, Float4 input) noexcept {
    const Float4 first = next(state, input);
    const Float4 second = next(first, __builtin_shufflevector(input, input, 1, 1, 1, 1));
    const Float4 third = next(second, __builtin_shufflevector(input, input, 2, 2, 2, 2));
    const Float4 fourth = next(third, __builtin_shufflevector(input, input, 3, 3, 3, 3));
    state = fourth;
    const Float4 early = __builtin_shufflevector(first, second, 0, 4, 0, 4);
    const Float4 late = __builtin_shufflevector(third, fourth, 0, 4, 0, 4);
    return __builtin_shufflevector(early, late, 0, 1, 4, 5);
}

} // namespace
} // namespace orvanta
