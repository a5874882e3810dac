// What the model costs the main thread: a tick of the meters, a refresh pass, a slider dragged.

#include "bench/SampleRecord.h"
#include "core/engine/AudioTapManager.h"
#include "core/persistence/SettingsStore.h"
#include "platform/linux/StandardErrorLog.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/model/ModelRig.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orvanta::bench {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::int32_t kFirstMixedPID = 100;
constexpr std::int32_t kApplications = 200;
constexpr int kSavesPerSecond = 60;
constexpr Seconds kTick{1.0 / 60.0};

std::string keyOf(std::int32_t pid) {
    return "com.example.application" + std::to_string(pid);
}

/// A model whose timers and queues go by a clock that the benchmark advances.
class Mixer : public test::ModelRig {
public:
    /// With that in place of the fakes.
    void start(const std::shared_ptr<AudioTapping>& taps,
               const std::shared_ptr<SettingsStoring>& store) {
        model =
            MixerViewModel::create(platformWith(server), {taps, discovery, devices, store}, true);
    }

    /// One observer on each published value.
    void observeEverything();

    void tapEverythingListed() {
        refresh();
        for (const AudioApp& each : discovery->apps)
            if (!model->isTapped(each.pid))
                model->toggleTap(each);
    }

private:
    std::vector<Observation> observations_;
    std::uint64_t announcements_ = 0;
};

void Mixer::observeEverything() {
    const auto observe = [this](auto&... published) {
        (observations_.push_back(published.observe([this](const auto&) { ++announcements_; })),
         ...);
    };
    MixerViewModel& all = *model;
    observations_.push_back(all.objectWillChange.observe([this] { ++announcements_; }));
    observe(all.audioApps, all.tappedPIDs, all.volumes, all.mutedPIDs, all.masterVolume,
            all.autoTapEnabled, all.appOutputDevices, all.eqSettings, all.isMasterMuted,
            all.launchAtLogin, all.audioLevels, all.audioRmsLevels, all.balances,
            all.compressorSettings, all.recordingPIDs, all.recordingDurations,
            all.compressorGainReduction, all.limiterEnabled, all.normalizationEnabled,
            all.normalizationGain, all.stereoWidths, all.crossfeedAmounts, all.selectedConsolePID,
            all.recordingFormat, all.recordingMode, all.recordingSaveDirectory, all.soloedPIDs,
            all.audioProfiles, all.activeProfileID, all.lastRecordingURL, all.lastRecordingAppName,
            all.showRecordingComplete, all.maxRecordingDuration, all.processStats,
            all.noiseGateEnabled, all.noiseGateThresholds);
}

/// One tick at 60 Hz with 32 taps: the meters, every fourth time the compressors' as well, once a
/// second the processes' statistics. `moving` is whether every peak changes with every tick.
void mixer_tick(benchmark::State& state) {
    constexpr std::int32_t kTaps = 32;
    Mixer mixer;
    mixer.startPassive();
    std::map<std::int32_t, AudioLevel> next;
    for (std::int32_t pid = kFirstMixedPID; pid < kFirstMixedPID + kTaps; ++pid) {
        mixer.list(pid, keyOf(pid));
        mixer.tapping->levels[pid] = {.rms = 0.1F, .peak = 0.5F};
        next[pid] = {.rms = 0.2F, .peak = state.range(0) != 0 ? 0.6F : 0.5F};
        mixer.processTable.tasks[pid] = {.residentSize = 1U << 20U};
    }
    mixer.tapEverythingListed();
    for (std::int32_t pid = kFirstMixedPID; pid < kFirstMixedPID + kTaps; ++pid)
        mixer.model->setCompressor(pid, CompressorPreset::music);
    mixer.model->setConsoleVisible(true);
    if (state.range(1) != 0)
        mixer.observeEverything();
    for ([[maybe_unused]] const auto turn : state) {
        mixer.tapping->levels.swap(next);
        mixer.runLoop.advance(kTick);
    }
}

/// The same with taps on a server whose devices run in real time.
void mixer_tickOfRunningTaps(benchmark::State& state) {
    constexpr std::int32_t kTaps = 32;
    Mixer mixer;
    mixer.server.addDevice({.uid = "output", .framesPerCycle = 256, .keepsPlayed = false});
    mixer.server.setDefaultOutput(mixer.server.findDevice("output"));
    mixer.start(std::make_shared<AudioTapManager>(mixer.platformWith(mixer.server)),
                mixer.settings);
    for (std::int32_t pid = kFirstMixedPID; pid < kFirstMixedPID + kTaps; ++pid) {
        const AudioObjectID program =
            mixer.server.addProgram({.pid = pid, .source = embedded::tone(440, 0.5F)});
        mixer.discovery->apps.emplace_back(mixer.workspace, program, pid, keyOf(pid), std::nullopt,
                                           true);
    }
    mixer.tapEverythingListed();
    mixer.model->setConsoleVisible(true);
    if (mixer.model->tappedPIDs.get().size() != kTaps)
        return state.SkipWithError("not all are tapped");
    mixer.server.startClock();
    for ([[maybe_unused]] const auto turn : state)
        mixer.runLoop.advance(kTick);
    mixer.server.stopClock();
}

/// A pass over 200 applications of which nothing has changed, the copy of their list included.
void mixer_refresh(benchmark::State& state) {
    const bool isTapped = state.range(0) != 0;
    Mixer mixer;
    const auto store = std::make_shared<SettingsStore>(mixer.userDefaults);
    for (std::int32_t pid = kFirstMixedPID; pid < kFirstMixedPID + kApplications; ++pid) {
        mixer.list(pid, keyOf(pid), keyOf(pid));
        store->save(keyOf(pid), sampleRecord(0.8F, isTapped));
    }
    mixer.start(mixer.tapping, store);
    mixer.refresh();
    if (mixer.model->tappedPIDs.get().size() != (isTapped ? kApplications : 0))
        return state.SkipWithError("not tapped as stored");
    if (state.range(1) != 0)
        mixer.observeEverything();
    for ([[maybe_unused]] const auto turn : state)
        mixer.refresh();
}

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// A volume dragged for a minute while 200 applications are tapped and stored in a database.
/// `busy` is the main thread's processor time as a share of that minute.
void mixer_dragForAMinute(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    StandardErrorLog log;
    Mixer mixer;
    SQLiteUserDefaults defaults({directory.path() / "settings.db", "com.meridane.orvanta"},
                                mixer.wallClock, log);
    const auto store = std::make_shared<SettingsStore>(defaults);
    for (std::int32_t pid = kFirstMixedPID; pid < kFirstMixedPID + kApplications; ++pid) {
        mixer.list(pid, keyOf(pid), keyOf(pid));
        store->save(keyOf(pid), sampleRecord(0.8F));
    }
    mixer.start(mixer.tapping, store);
    mixer.refresh();
    if (state.range(0) != 0)
        mixer.observeEverything();
    for ([[maybe_unused]] const auto turn : state) {
        const auto start = Clock::now();
        double processorSeconds = 0;
        Milliseconds longest{};
        for (int save = 0; save < 60 * kSavesPerSecond; ++save) {
            std::this_thread::sleep_until(start + save * std::chrono::microseconds(1'000'000) /
                                                      kSavesPerSecond);
            const auto before = Clock::now();
            const double processorBefore = threadSeconds();
            mixer.model->setVolume(kFirstMixedPID + 77, static_cast<float>(save) / 1000.0F);
            processorSeconds += threadSeconds() - processorBefore;
            longest = std::max(longest, Milliseconds(Clock::now() - before));
        }
        state.counters["busy_percent"] =
            100 * processorSeconds * 1000 / Milliseconds(Clock::now() - start).count();
        state.counters["longest_ms"] = longest.count();
    }
}

BENCHMARK(mixer_tick)
    ->ArgNames({"moving", "observed"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(mixer_tickOfRunningTaps)->Unit(benchmark::kMicrosecond);
BENCHMARK(mixer_refresh)
    ->ArgNames({"tapped", "observed"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(mixer_dragForAMinute)
    ->ArgName("observed")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1)
    ->Unit(benchmark::kSecond)
    ->UseRealTime();

} // namespace
} // namespace orvanta::bench
