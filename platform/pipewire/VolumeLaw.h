#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

/// The server keeps linear factors; volume controls of this desktop all show their cube root,
/// because equal steps of that sound equal.
namespace orvanta::pipewire {

/// 0 to 1 for a linear factor; what is amplified beyond 1 shows as 1.
inline float scalarFromLinear(float linear) {
    return std::isfinite(linear) ? std::clamp(std::cbrt(linear), 0.0F, 1.0F) : 0.0F;
}

inline float linearFromScalar(float scalar) {
    const float held = std::clamp(scalar, 0.0F, 1.0F);
    return held * held * held;
}

/// Channel factors whose loudest is `scalar`, the balance between them kept. Where there is no
/// balance to keep because all are silent, all become equal.
inline std::vector<float> withMainScalar(std::vector<float> linear, float scalar) {
    const float target = linearFromScalar(scalar);
    const float loudest = linear.empty() ? 0.0F : *std::max_element(linear.begin(), linear.end());
    for (float& channel : linear)
        channel = loudest > 0.0F && std::isfinite(loudest) ? channel / loudest * target : target;
    return linear;
}

} // namespace orvanta::pipewire
