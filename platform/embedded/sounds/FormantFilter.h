#pragma once

#include <array>

namespace orvanta::embedded {

/// The centres of the three lowest resonances of a vocal tract, Hz.
using Formants = std::array<double, 3>;

/// A vocal tract: three resonators one after the other, each of unity gain at zero frequency. The
/// centres may move at any time; between two moves the filter is constant.
class FormantFilter {
public:
    void set(const Formants& centres, double sampleRate) noexcept;
    float process(float input) noexcept;

private:
    struct Resonator {
        float gain = 1;
        float first = 0;
        float second = 0;
        float last = 0;
        float lastButOne = 0;
    };

    std::array<Resonator, 3> resonators_;
};

} // namespace orvanta::embedded
