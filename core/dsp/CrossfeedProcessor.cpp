#include "core/dsp/CrossfeedProcessor.h"

#include "core/dsp/UsableRate.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvanta {
namespace {

constexpr double kDelaySeconds = 0.0003;
constexpr double kCutoffHz = 700.0;
constexpr float kOffBelow = 0.01F;

std::size_t delayAt(double sampleRate) {
    return std::max<std::size_t>(static_cast<std::size_t>(usableRate(sampleRate) * kDelaySeconds),
                                 1);
}

float lpCoeffAt(double sampleRate) {
    return static_cast<float>(
        std::exp(-2.0 * std::numbers::pi * kCutoffHz / usableRate(sampleRate)));
}

} // namespace

CrossfeedProcessor::CrossfeedProcessor(double sampleRate, const Kernels& kernels)
    : kernels_(kernels.stereo),
      lpCoeff_(lpCoeffAt(sampleRate)),
      lineL_(delayAt(sampleRate)),
      lineR_(delayAt(sampleRate)) {}

void CrossfeedProcessor::setAmount(float amount) noexcept {
    if (std::isfinite(amount))
        amount_.store(amount);
}

bool CrossfeedProcessor::isOff() const noexcept {
    return amount_.load() < kOffBelow;
}

void CrossfeedProcessor::clear() noexcept {
    lineL_.clear();
    lineR_.clear();
    lpStateL_ = 0.0F;
    lpStateR_ = 0.0F;
}

template <class Kernel>
void CrossfeedProcessor::process(std::size_t frameCount, const Kernel& kernel) noexcept {
    const float amount = amount_.load();
    if (amount < kOffBelow || frameCount == 0)
        return;
    clear_.answer([this] { clear(); });

    const CrossfeedSettings settings{.amount = amount,
                                     .norm = 1.0F / (amount * 0.5F + 1.0F),
                                     .lpCoeff = lpCoeff_,
                                     .delay = lineL_.delay()};
    CrossfeedRun run{.lpStateL = lpStateL_, .lpStateR = lpStateR_};
    for (std::size_t done = 0; done < frameCount;) {
        const std::size_t count = std::min(frameCount - done, lineL_.longestRun());
        run.lineL = lineL_.nextRun(count);
        run.lineR = lineR_.nextRun(count);
        kernel(done, count, settings, run);
        done += count;
    }
    lpStateL_ = run.lpStateL;
    lpStateR_ = run.lpStateR;
}

void CrossfeedProcessor::processPlanar(float* left, float* right, std::size_t count) noexcept {
    process(count, [&](std::size_t done, std::size_t length, const CrossfeedSettings& settings,
                       CrossfeedRun& run) {
        kernels_.crossfeedPlanar(left + done, right + done, length, settings, run);
    });
}

void CrossfeedProcessor::processInterleaved(float* buffer, std::size_t frameCount) noexcept {
    process(frameCount, [&](std::size_t done, std::size_t length, const CrossfeedSettings& settings,
                            CrossfeedRun& run) {
        kernels_.crossfeedInterleaved(buffer + 2 * done, length, settings, run);
    });
}

} // namespace orvanta
