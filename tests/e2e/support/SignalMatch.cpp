#include "tests/e2e/support/SignalMatch.h"

#include <algorithm>
#include <cmath>

namespace orvanta::test {

namespace {

constexpr std::size_t anchorFrames = 512;
constexpr double leastCorrelation = 0.7;

double product(std::span<const float> a, std::span<const float> b) {
    // Four sums side by side, or the search over all offsets would take seconds.
    float sums[4] = {};
    for (std::size_t index = 0; index + 4 <= a.size(); index += 4)
        for (std::size_t lane = 0; lane < 4; ++lane)
            sums[lane] += a[index + lane] * b[index + lane];
    return static_cast<double>(sums[0] + sums[1] + sums[2] + sums[3]);
}

struct Extent {
    std::size_t first = 0;
    std::size_t end = 0;

    [[nodiscard]] std::size_t frames() const { return end - first; }
};

Extent soundingExtent(std::span<const float> recording) {
    const auto sounds = [](float sample) {
        return sample != 0.0F;
    };
    const auto first = std::find_if(recording.begin(), recording.end(), sounds);
    const auto last = std::find_if(recording.rbegin(), recording.rend(), sounds);
    if (first == recording.end())
        return {};
    return {static_cast<std::size_t>(first - recording.begin()),
            static_cast<std::size_t>(last.base() - recording.begin())};
}

/// Offset into the signal at which the anchor resembles it most.
std::optional<std::size_t> mostSimilar(std::span<const float> anchor,
                                       std::span<const float> signal) {
    const double anchorEnergy = product(anchor, anchor);
    std::optional<std::size_t> best;
    double bestCorrelation = leastCorrelation;
    for (std::size_t offset = 0; offset + anchor.size() <= signal.size(); ++offset) {
        const auto stretch = signal.subspan(offset, anchor.size());
        const double energy = product(stretch, stretch);
        const double correlation =
            product(anchor, stretch) / std::sqrt(std::max(energy * anchorEnergy, 1e-30));
        if (correlation > bestCorrelation) {
            bestCorrelation = correlation;
            best = offset;
        }
    }
    return best;
}

} // namespace

std::optional<SignalMatch> findSignal(std::span<const float> recording,
                                      std::span<const float> signal) {
    const Extent extent = soundingExtent(recording);
    if (extent.frames() < anchorFrames)
        return std::nullopt;
    const std::size_t middle = extent.first + (extent.frames() - anchorFrames) / 2;
    const auto place = mostSimilar(recording.subspan(middle, anchorFrames), signal);
    if (!place)
        return std::nullopt;

    SignalMatch match;
    match.offset = static_cast<std::int64_t>(*place) - static_cast<std::int64_t>(middle);
    double dot = 0;
    double energy = 0;
    const auto forEachPair = [&](auto&& visit) {
        for (std::size_t index = extent.first; index < extent.end; ++index) {
            const std::int64_t position = static_cast<std::int64_t>(index) + match.offset;
            if (position >= 0 && position < static_cast<std::int64_t>(signal.size()))
                visit(static_cast<double>(recording[index]),
                      static_cast<double>(signal[static_cast<std::size_t>(position)]));
        }
    };
    forEachPair([&](double recorded, double known) {
        dot += recorded * known;
        energy += known * known;
        ++match.frames;
    });
    match.gain = energy > 0 ? dot / energy : 0;
    forEachPair([&](double recorded, double known) {
        match.residual = std::max(match.residual, std::abs(recorded - match.gain * known));
    });
    return match;
}

double level(std::span<const float> samples) {
    double sum = 0;
    for (const float sample : samples)
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

} // namespace orvanta::test
