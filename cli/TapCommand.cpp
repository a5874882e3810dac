#include "cli/TapCommand.h"

#include "cli/StatusWords.h"
#include "cli/StopSignals.h"
#include "cli/VolumeRide.h"
#include "core/discovery/AudioProcessDiscovery.h"
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

/// As the process list has it; empty for a process that is not in it any more.
std::string nameOf(const Platform& platform, std::int32_t pid) {
    for (const AudioApp& app : AudioProcessDiscovery(platform).discoverAllAudioProcesses())
        if (app.pid == pid)
            return app.name;
    return {};
}

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

/// False, after a sentence on standard error, when a file that was asked for cannot be made.
bool startRecording(AudioTapManager& manager, const Platform& platform, const TapOptions& options,
                    const ConsoleLog& log) {
    const RecordOptions& record = options.record;
    if (!record.folder)
        return true;
    const std::string name = nameOf(platform, options.pid);
    const RecordingFiles files =
        manager.startRecording(options.pid, name, record.format, *record.folder, record.mode);
    const bool isComplete = (files.wet || record.mode == RecordingMode::original) &&
                            (files.dry || record.mode == RecordingMode::processed);
    if (!isComplete)
        fmt::print(stderr, "AudioMixerCLI: cannot record into {}: {}.\n", record.folder->string(),
                   log.lastError());
    return isComplete;
}

void stopRecording(AudioTapManager& manager, std::int32_t pid) {
    const RecordingFiles files = manager.stopRecording(pid);
    for (const auto& file : {files.wet, files.dry})
        if (file)
            fmt::print("Recorded {}\n", file->string());
}

/// What the processors that are there do to the level right now.
std::string gains(const AudioTapManager& manager, std::int32_t pid) {
    std::string text;
    if (const auto gain = manager.getNormalizationGain(pid))
        text += fmt::format("  normalisation {:+.1f} dB", *gain);
    if (const auto reduction = manager.getCompressorGainReduction(pid))
        text += fmt::format("  compressor {:.1f} dB", fmt::join(*reduction, "/"));
    if (manager.isRecording(pid))
        text += fmt::format("  recording {:.1f} s", manager.recordingDuration(pid));
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
    if (options.deviceUID && !manager.routeToDevice(options.pid, options.deviceUID)) {
        fmt::print(stderr, "AudioMixerCLI: cannot play on the device '{}': {}.\n",
                   *options.deviceUID, withStatusInWords(log.lastError()));
        return kExitFailure;
    }
    if (!startRecording(manager, platform, options, log)) {
        stopRecording(manager, options.pid);
        return kExitFailure;
    }
    fmt::print("Tapped process {} for {} s; Ctrl-C gives it back earlier.\n", options.pid,
               options.seconds);
    std::fflush(stdout);
    const auto hasEnded = [&] {
        return !platform.processTable.name(options.pid);
    };
    holdTap(manager, options, signals, hasEnded);
    stopRecording(manager, options.pid);
    // Waits until the files are complete.
    manager.removeTap(options.pid);
    fmt::print("Process {} {}.\n", options.pid,
               hasEnded() ? "has ended" : "plays on its own again");
    return kExitSuccess;
}

} // namespace orvanta::cli
