#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

/// Plain versions of the processors: one sample after the other, nothing clever, to hold the fast
/// ones against.
namespace orvanta::reference {

/// Ten filters in series.
class Equaliser {
public:
    static constexpr std::size_t kBands = 10;
    static constexpr std::size_t kMostSamples = 4096;

    Equaliser(double sampleRate, std::size_t channels)
        : sampleRate_(sampleRate), histories_(channels) {}

    /// dB, within +-12.
    void setGain(std::size_t band, float gain) {
        gains_[band] = gain;
        running_[band] = singleRow(band);
    }

    void clear() { std::fill(histories_.begin(), histories_.end(), ChannelHistory{}); }

    [[nodiscard]] bool isActive(std::size_t band) const { return std::fabs(gains_[band]) > 0.05F; }

    /// b0, b1, b2, a1, a2 in double precision.
    [[nodiscard]] std::array<double, 5> row(std::size_t band) const {
        if (!isActive(band))
            return {1, 0, 0, 0, 0};
        const bool isShelf = band == 0 || band == kBands - 1;
        const double frequency =
            std::array<double, kBands>{31, 62, 125, 250, 500, 1000, 2000, 4000, 8000, 16000}[band];
        const auto q = static_cast<double>(isShelf ? 0.707F : 1.4F);
        const double A = std::pow(10.0, static_cast<double>(gains_[band]) / 40.0);
        const double w0 = frequency * 6.283185307179586 / sampleRate_;
        const double s = std::sin(w0);
        const double c = std::cos(w0);
        const double alpha = s / (2.0 * q);
        const double beta = 2.0 * std::sqrt(A) * alpha;

        double b0 = 1.0 + alpha * A;
        double b1 = -2.0 * c;
        double b2 = 1.0 - alpha * A;
        double a0 = 1.0 + alpha / A;
        double a1 = -2.0 * c;
        double a2 = 1.0 - alpha / A;
        if (band == 0) {
            b0 = A * ((A + 1.0) - (A - 1.0) * c + beta);
            b1 = 2.0 * A * ((A - 1.0) - (A + 1.0) * c);
            b2 = A * ((A + 1.0) - (A - 1.0) * c - beta);
            a0 = (A + 1.0) + (A - 1.0) * c + beta;
            a1 = -2.0 * ((A - 1.0) + (A + 1.0) * c);
            a2 = (A + 1.0) + (A - 1.0) * c - beta;
        }
        if (band == kBands - 1) {
            b0 = A * ((A + 1.0) + (A - 1.0) * c + beta);
            b1 = -2.0 * A * ((A - 1.0) + (A + 1.0) * c);
            b2 = A * ((A + 1.0) + (A - 1.0) * c - beta);
            a0 = (A + 1.0) - (A - 1.0) * c + beta;
            a1 = 2.0 * ((A - 1.0) - (A + 1.0) * c);
            a2 = (A + 1.0) - (A - 1.0) * c - beta;
        }
        return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
    }

    [[nodiscard]] std::array<float, 5> singleRow(std::size_t band) const {
        std::array<float, 5> rounded{};
        const auto exact = row(band);
        for (std::size_t k = 0; k < rounded.size(); ++k)
            rounded[k] = static_cast<float>(exact[k]);
        return rounded;
    }

    void process(float* buffer, std::size_t count, std::size_t channel) {
        if (channel >= histories_.size() || count < 1)
            return;
        const std::size_t n = std::min(count, kMostSamples);
        for (std::size_t band = 0; band < kBands; ++band)
            if (isActive(band) && isStable(running_[band]))
                filter(buffer, n, running_[band], histories_[channel][band]);
        recover(buffer, n, histories_[channel]);
    }

private:
    struct History {
        float x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    };

    using ChannelHistory = std::array<History, kBands>;

    /// A filter that would ring up for ever is left out.
    static bool isStable(const std::array<float, 5>& row) {
        return std::fabs(row[4]) < 1.0F &&
               static_cast<double>(std::fabs(row[3])) < 1.0 + static_cast<double>(row[4]);
    }

    static void filter(float* buffer, std::size_t n, const std::array<float, 5>& row,
                       History& history) {
        const auto [b0, b1, b2, a1, a2] = row;
        // A copy, because a store to the buffer could change the original for all the compiler
        // knows, and the benchmarks measure against this loop.
        auto [x1, x2, y1, y2] = history;
        for (std::size_t k = 0; k < n; ++k) {
            const float x = buffer[k];
            float y = x * b0;
            y = y + x1 * b1;
            y = y + x2 * b2;
            y = y - y1 * a1;
            y = y - y2 * a2;
            x2 = x1;
            x1 = x;
            y2 = y1;
            y1 = y;
            buffer[k] = y;
        }
        history = {x1, x2, y1, y2};
    }

    /// Histories with anything in them that is no finite number start again from silence, and what
    /// the filters put out that is none is silence. Histories of bands at rest are always finite.
    void recover(float* buffer, std::size_t n, ChannelHistory& histories) const {
        const bool isPoisoned =
            std::any_of(histories.begin(), histories.end(), [](const History& each) {
                return !std::isfinite(each.x1) || !std::isfinite(each.x2) ||
                       !std::isfinite(each.y1) || !std::isfinite(each.y2);
            });
        if (!isPoisoned)
            return;
        for (std::size_t k = 0; k < n; ++k)
            if (!std::isfinite(buffer[k]))
                buffer[k] = 0;
        for (std::size_t band = 0; band < kBands; ++band)
            if (isActive(band) && isStable(running_[band]))
                histories[band] = {};
    }

    double sampleRate_;
    std::array<float, kBands> gains_{};
    std::array<std::array<float, 5>, kBands> running_{};
    std::vector<ChannelHistory> histories_;
};

} // namespace orvanta::reference
