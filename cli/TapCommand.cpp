#include "cli/TapCommand.h"

#include "cli/MainThread.h"
#include "cli/StatusWords.h"
#include "cli/StopSignals.h"
#include "cli/VolumeRide.h"
#include "core/discovery/AudioProcessDiscovery.h"

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

/// The application with this process, or else the process itself; nothing where there is none.
std::optional<AudioApp> findProcess(const Platform& platform, std::int32_t pid) {
    AudioProcessDiscovery discovery(platform);
    for (const auto& apps : {discovery.discoverAudioApps(), discovery.discoverAllAudioProcesses()})
        if (const auto found = std::ranges::find(apps, pid, &AudioApp::pid); found != apps.end())
            return *found;
    return std::nullopt;
}

std::string decibels(float linear) {
    return linear > 0.0F ? fmt::format("{:6.1f}", 20.0F * std::log10(linear)) : "  -inf";
}

void applySettings(MixerViewModel& model, const TapOptions& options) {
    if (options.volume)
        model.setVolume(options.pid, *options.volume);
    if (options.balance)
        model.setBalance(options.pid, *options.balance);
    if (options.isLimited)
        model.setLimiterEnabled(options.pid, true);
    if (options.gateThreshold)
        model.setNoiseGate(options.pid, true, *options.gateThreshold);
    if (options.eq)
        for (int band = 0; band < static_cast<int>(kEQBandCount); ++band)
            model.setEQ(options.pid, band, options.eq->gains[static_cast<std::size_t>(band)]);
    if (options.compressor)
        model.setCompressor(options.pid, *options.compressor);
    if (options.isNormalized)
        model.setNormalizationEnabled(options.pid, true);
    if (options.stereoWidth)
        model.setStereoWidth(options.pid, *options.stereoWidth);
    if (options.crossfeed)
        model.setCrossfeed(options.pid, *options.crossfeed);
    if (options.isMuted)
        model.toggleMute(options.pid);
}

/// False where the tap does not play as it was asked to.
bool route(MixerViewModel& model, const TapOptions& options) {
    if (options.deviceUID)
        model.routeApp(options.pid, options.deviceUID);
    return model.outputDeviceUID(options.pid) == options.deviceUID;
}

/// False, after a sentence on standard error, when a file that was asked for cannot be made. The
/// tap is asked and not the model, which tells of one file.
bool startRecording(AudioTapping& tapping, const AudioApp& app, const RecordOptions& record,
                    const ConsoleLog& log) {
    if (!record.folder)
        return true;
    const RecordingFiles files =
        tapping.startRecording(app.pid, app.name, record.format, *record.folder, record.mode);
    const bool isComplete = (files.wet || record.mode == RecordingMode::original) &&
                            (files.dry || record.mode == RecordingMode::processed);
    if (!isComplete)
        fmt::print(stderr, "AudioMixerCLI: cannot record into {}: {}.\n", record.folder->string(),
                   log.lastError());
    return isComplete;
}

void stopRecording(AudioTapping& tapping, std::int32_t pid) {
    const RecordingFiles files = tapping.stopRecording(pid);
    for (const auto& file : {files.wet, files.dry})
        if (file)
            fmt::print("Recorded {}\n", file->string());
}

/// What the processors that are there do to the level right now.
std::string gains(const AudioTapping& tapping, std::int32_t pid) {
    std::string text;
    if (const auto gain = tapping.getNormalizationGain(pid))
        text += fmt::format("  normalisation {:+.1f} dB", *gain);
    if (const auto reduction = tapping.getCompressorGainReduction(pid))
        text += fmt::format("  compressor {:.1f} dB", fmt::join(*reduction, "/"));
    if (tapping.isRecording(pid))
        text += fmt::format("  recording {:.1f} s", tapping.recordingDuration(pid));
    return text;
}

/// False when nobody reads the output any more.
bool printLevels(const AudioTapping& tapping, std::int32_t pid, double seconds) {
    const auto level = tapping.getAudioLevel(pid).value_or(AudioLevel{});
    const auto seen = tapping.getDiagnostics(pid).value_or(TapDiagnostics{});
    fmt::print("{:7.1f} s  rms {} dB  peak {} dB  gate {}  callbacks {}  in {} x {} bytes  "
               "pairs {}  input peak {} dB{}\n",
               seconds, decibels(level.rms), decibels(level.peak),
               tapping.isNoiseGateOpen(pid).value_or(true) ? "open  " : "closed",
               tapping.getCallbackCount(pid), seen.inBufs, seen.inBytes, seen.copyCount,
               decibels(seen.inPeak), gains(tapping, pid));
    return std::fflush(stdout) == 0;
}

/// Prints a line of levels at every interval and moves the volume along its ride in between, until
/// the time is over, a signal comes, nobody reads any more, or `hasEnded` says so.
void holdTap(MainThreadModel& model, const AudioTapping& tapping, const TapOptions& options,
             StopSignals& signals, const std::function<bool()>& hasEnded) {
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
            model([&](MixerViewModel& mixer) { mixer.setVolume(options.pid, ride.volumeAt(now)); });
            nextStep += kRideStep;
        }
        if (isLast || now >= nextLine) {
            if (!printLevels(tapping, options.pid, now) || hasEnded())
                return;
            nextLine += options.interval;
        }
        if (isLast)
            return;
    }
}

int refuseTap(std::int32_t pid, const std::string& reason) {
    fmt::print(stderr, "AudioMixerCLI: cannot tap process {}: {}.\n", pid, reason);
    return kExitFailure;
}

} // namespace

int runTapCommand(const Platform& platform, const TapOptions& options, const ConsoleLog& log) {
    StopSignals signals;
    const auto app = findProcess(platform, options.pid);
    if (!app)
        return refuseTap(options.pid,
                         fmt::format("No audio process found for PID {}", options.pid));
    // It lists nothing, so it also lets go of nothing that is no application.
    MainThreadModel model(platform.mainRunLoop,
                          [&] { return MixerViewModel::create(platform, {}, true); });
    const auto isTapped = [&](const MixerViewModel& mixer) {
        return mixer.isTapped(options.pid);
    };
    model([&](MixerViewModel& mixer) { mixer.toggleTap(*app); });
    if (!model(isTapped))
        return refuseTap(options.pid, withStatusInWords(log.lastError()));
    model([&](MixerViewModel& mixer) { applySettings(mixer, options); });
    if (!model([&](MixerViewModel& mixer) { return route(mixer, options); })) {
        fmt::print(stderr, "AudioMixerCLI: cannot play on the device '{}': {}.\n",
                   *options.deviceUID, withStatusInWords(log.lastError()));
        return kExitFailure;
    }
    AudioTapping& tapping = *model([](MixerViewModel& mixer) { return &mixer.tapManager(); });
    if (!startRecording(tapping, *app, options.record, log)) {
        stopRecording(tapping, options.pid);
        return kExitFailure;
    }
    fmt::print("Tapped process {} for {} s; Ctrl-C gives it back earlier.\n", options.pid,
               options.seconds);
    std::fflush(stdout);
    const auto hasEnded = [&] {
        return !platform.processTable.name(options.pid);
    };
    holdTap(model, tapping, options, signals, hasEnded);
    stopRecording(tapping, options.pid);
    // Waits until the files are complete.
    model([&](MixerViewModel& mixer) { mixer.toggleTap(*app); });
    fmt::print("Process {} {}.\n", options.pid,
               hasEnded() ? "has ended" : "plays on its own again");
    return kExitSuccess;
}

} // namespace orvanta::cli
