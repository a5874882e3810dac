#include "cli/TapCommand.h"

#include "cli/StatusWords.h"
#include "cli/StopSignals.h"
#include "cli/VolumeRide.h"
#include "core/engine/AudioTapManager.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>

namespace orvanta::cli {
namespace {

using Clock = std::chrono::steady_clock;
using Duration = std::chrono::duration<double>;

/// Seconds between two steps of a riding volume: about as often as a hand on a fader is followed.
constexpr double kRideStep = 0.02;

std::string decibels(float linear) {
    return linear > 0.0F ? fmt::format("{:6.1f}", 20.0F * std::log10(linear)) : "  -inf";
}

void applySettings(AudioTapManager& manager, const TapOptions& options) {
    if (options.volume)
        manager.setVolume(options.pid, *options.volume);
    if (options.balance)
        manager.setBalance(options.pid, *options.balance);
    if (options.isLimited)
        manager.setLimiterEnabled(options.pid, true);
    if (options.gateThreshold)
        manager.setNoiseGate(options.pid, true, *options.gateThreshold);
    if (options.eq)
        for (int band = 0; band < kEQBandCount; ++band)
            manager.setEQ(options.pid, band, options.eq->gains[static_cast<std::size_t>(band)]);
    if (options.compressor)
        manager.setCompressor(options.pid, *options.compressor);
    if (options.isNormalized)
        manager.setNormalizationEnabled(options.pid, true);
    if (options.stereoWidth)
        manager.setStereoWidth(options.pid, *options.stereoWidth);
    if (options.crossfeed)
        manager.setCrossfeed(options.pid, *options.crossfeed);
    if (options.isMuted)
        manager.setMuted(options.pid, true);
}

/// What the processors that are there do to the level right now.
std::string gains(const AudioTapManager& manager, std::int32_t pid) {
    std::string text;
    if (const auto gain = manager.getNormalizationGain(pid))
        text += fmt::format("  normalisation {:+.1f} dB", *gain);
    if (const auto reduction = manager.getCompressorGainReduction(pid))
        text += fmt::format("  compressor {:.1f} dB", fmt::join(*reduction, "/"));
    return text;
}

/// False when nobody reads the output any more.
bool printLevels(const AudioTapManager& manager, std::int32_t pid, double seconds) {
    const auto level = manager.getAudioLevel(pid).value_or(AudioLevel{});
    const auto seen = manager.getDiagnostics(pid).value_or(TapDiagnostics{});
    fmt::print("{:7.1f} s  rms {} dB  peak {} dB  gate {}  callbacks {}  in {} x {} bytes  "
               "pairs {}  input peak {} dB{}\n",
               seconds, decibels(level.rms), decibels(level.peak),
               manager.isNoiseGateOpen(pid).value_or(true) ? "open  " : "closed",
               manager.getCallbackCount(pid), seen.inBufs, seen.inBytes, seen.copyCount,
               decibels(seen.inPeak), gains(manager, pid));
    return std::fflush(stdout) == 0;
}

/// Prints a line of levels at every interval and moves the volume along its ride in between, until
/// the time is over, a signal comes, nobody reads any more, or `hasEnded` says so.
void holdTap(AudioTapManager& manager, const TapOptions& options, StopSignals& signals,
             const std::function<bool()>& hasEnded) {
    const VolumeRide ride(options.ride);
    const auto start = Clock::now();
    double nextLine = options.interval;
    double nextStep = ride.isEmpty() ? options.seconds : 0.0;
    for (;;) {
        const bool isStopped =
            signals.waitUntil(start + Duration(std::min({nextLine, nextStep, options.seconds})));
        const double now = Duration(Clock::now() - start).count();
        const bool isLast = isStopped || now >= options.seconds;
        if (!ride.isEmpty() && now >= nextStep) {
            manager.setVolume(options.pid, ride.volumeAt(now));
            nextStep += kRideStep;
        }
        if (isLast || now >= nextLine) {
            if (!printLevels(manager, options.pid, now) || hasEnded())
                return;
            nextLine += options.interval;
        }
        if (isLast)
            return;
    }
}

} // namespace

int runTapCommand(const Platform& platform, const TapOptions& options, const ConsoleLog& log) {
    StopSignals signals;
    AudioTapManager manager(platform);
    if (!manager.createTap(options.pid)) {
        fmt::print(stderr, "AudioMixerCLI: cannot tap process {}: {}.\n", options.pid,
                   withStatusInWords(log.lastError()));
        return kExitFailure;
    }
    applySettings(manager, options);
    fmt::print("Tapped process {} for {} s; Ctrl-C gives it back earlier.\n", options.pid,
               options.seconds);
    std::fflush(stdout);
    const auto hasEnded = [&] {
        return !platform.processTable.name(options.pid);
    };
    holdTap(manager, options, signals, hasEnded);
    manager.removeTap(options.pid);
    fmt::print("Process {} {}.\n", options.pid,
               hasEnded() ? "has ended" : "plays on its own again");
    return kExitSuccess;
}

} // namespace orvanta::cli
