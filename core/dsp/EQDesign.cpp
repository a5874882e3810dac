#include "core/dsp/EQDesign.h"

#include <cmath>

namespace orvanta {
namespace {

constexpr double kFullTurn = 6.283185307179586;

struct Biquad {
    double b0, b1, b2;
    double a0, a1, a2;
};

/// The quantities that the formulas share, by their published names; `beta` is 2·sqrt(A)·alpha.
struct Terms {
    double A;
    double cosine;
    double alpha;
    double beta;
};

Terms termsOf(const EQBand& band, double sampleRate) {
    const double A = std::pow(10.0, static_cast<double>(band.gain) / 40.0);
    const double w0 = static_cast<double>(band.frequency) * kFullTurn / sampleRate;
    const double alpha = std::sin(w0) / (2.0 * static_cast<double>(band.q));
    return {A, std::cos(w0), alpha, 2.0 * std::sqrt(A) * alpha};
}

Biquad lowShelf(const Terms& of) {
    const auto [A, c, alpha, beta] = of;
    return {A * ((A + 1) - (A - 1) * c + beta), 2 * A * ((A - 1) - (A + 1) * c),
            A * ((A + 1) - (A - 1) * c - beta), (A + 1) + (A - 1) * c + beta,
            -2 * ((A - 1) + (A + 1) * c),       (A + 1) + (A - 1) * c - beta};
}

Biquad peaking(const Terms& of) {
    const auto [A, c, alpha, beta] = of;
    return {1 + alpha * A, -2 * c, 1 - alpha * A, 1 + alpha / A, -2 * c, 1 - alpha / A};
}

Biquad highShelf(const Terms& of) {
    const auto [A, c, alpha, beta] = of;
    return {A * ((A + 1) + (A - 1) * c + beta), -2 * A * ((A - 1) + (A + 1) * c),
            A * ((A + 1) + (A - 1) * c - beta), (A + 1) - (A - 1) * c + beta,
            2 * ((A - 1) - (A + 1) * c),        (A + 1) - (A - 1) * c - beta};
}

Biquad designed(EQBandType type, const Terms& terms) {
    switch (type) {
    case EQBandType::lowShelf:
        return lowShelf(terms);
    case EQBandType::peaking:
        return peaking(terms);
    case EQBandType::highShelf:
        return highShelf(terms);
    }
    return peaking(terms);
}

} // namespace

EQCoefficients eqCoefficients(const EQBand& band, double sampleRate) noexcept {
    if (!band.isActive())
        return kEQIdentity;
    const auto [b0, b1, b2, a0, a1, a2] = designed(band.type, termsOf(band, sampleRate));
    return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
}

EQSingleCoefficients rounded(const EQCoefficients& coefficients) noexcept {
    EQSingleCoefficients single{};
    for (std::size_t k = 0; k < single.size(); ++k)
        single[k] = static_cast<float>(coefficients[k]);
    return single;
}

bool isStable(const EQSingleCoefficients& coefficients) noexcept {
    const auto a1 = static_cast<double>(coefficients[3]);
    const auto a2 = static_cast<double>(coefficients[4]);
    // The triangle in which both poles are inside; NaN is in no triangle.
    return std::fabs(a2) < 1.0 && std::fabs(a1) < 1.0 + a2;
}

} // namespace orvanta
