// The fast clock: meters, and what is counted by their ticks. Every announcement costs a redraw, so
// a map is assigned at most once in a tick, and only when something in it has changed.

#include "core/model/DiagnosticText.h"
#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

#include <fmt/format.h>

#include <utility>

namespace orvanta {
namespace {

struct LevelRate {
    Seconds interval;
    const char* label;
};

constexpr LevelRate kViewRate{Seconds{1.0 / 60.0}, "60Hz"};
constexpr LevelRate kBackgroundRate{Seconds{0.125}, "8Hz-bg"};
constexpr LevelRate kIdleRate{Seconds{1.0}, "1Hz-idle"};

// In ticks.
constexpr std::int64_t kDiagnosticPeriod = 480;
constexpr std::int64_t kGainReductionPeriod = 4;
constexpr std::int64_t kStatsPeriod = 60;

/// A peak above it is a sound.
constexpr float kSound = 0.005F;

} // namespace

void MixerViewModel::updateLevelTimer() {
    if (tappedPIDs.get().empty()) {
        if (levelTimer_)
            std::exchange(levelTimer_, nullptr)->invalidate();
        return;
    }
    const LevelRate& whileHeard = isViewOpen() ? kViewRate : kBackgroundRate;
    const LevelRate& rate = allTappedSilent_ ? kIdleRate : whileHeard;
    if (levelTimer_ && levelTimer_->interval() == rate.interval)
        return;
    if (levelTimer_)
        levelTimer_->invalidate();
    diagnose([&] {
        return fmt::format("⏱ timer: {} tapped={}\n", rate.label, tappedPIDs.get().size());
    });
    levelTimer_ = platform_.mainRunLoop.repeat(
        rate.interval, weakly([](MixerViewModel& self) { self.levelTick(); }));
}

void MixerViewModel::levelTick() {
    pollLevels();
    if (!isViewOpen() || ++statsPollCounter_ < kStatsPeriod)
        return;
    statsPollCounter_ = 0;
    queueProcessStats();
}

void MixerViewModel::pollLevels() {
    ++diagPollCount_;
    const bool isDiagnosticTick = isViewOpen() && diagPollCount_ % kDiagnosticPeriod == 0;
    const PIDSet tapped = tappedPIDs.get();
    if (isDiagnosticTick)
        diagnose([&] {
            return fmt::format("POLL {} tapped={} pids={} apps=[{}]\n", diagPollCount_,
                               tapped.size(), diagnosticText(tapped),
                               diagnosticText(audioApps.get()));
        });
    LevelReadings readings;
    for (const std::int32_t pid : tapped)
        pollLevel(pid, isDiagnosticTick, readings);
    // RMS levels alone are not worth a redraw.
    if (!readings.peaks.empty()) {
        setEntries(audioLevels, readings.peaks);
        setEntries(audioRmsLevels, readings.rms);
    }
    if (isViewOpen() && diagPollCount_ % kGainReductionPeriod == 0)
        pollGainReduction();
    if (!recordingPIDs.get().empty())
        pollRecordings();
}

void MixerViewModel::pollLevel(std::int32_t pid, bool isDiagnosticTick, LevelReadings& readings) {
    const auto level = tapManager_->getAudioLevel(pid);
    const float old = audioLevel(pid);
    if (!level) {
        // A meter whose tap has gone falls once.
        if (old > kSound) {
            readings.peaks.emplace_back(pid, 0.0F);
            readings.rms.emplace_back(pid, 0.0F);
        }
        return;
    }
    if (isDiagnosticTick)
        pollDiagnostics(pid, *level, old);
    if (level->peak > kSound)
        lastActiveTime_[pid] = platform_.mainRunLoop.now();
    if (level->peak != old)
        readings.peaks.emplace_back(pid, level->peak);
    readings.rms.emplace_back(pid, level->rms);
}

void MixerViewModel::pollDiagnostics(std::int32_t pid, const AudioLevel& level, float old) {
    const std::uint64_t callbackCount = tapManager_->getCallbackCount(pid);
    const auto seen = tapManager_->getDiagnostics(pid);
    checkStall(pid, callbackCount, seen);
    if (!seen)
        return;
    diagnose([&] {
        return fmt::format("VU pid={} peak={} rms={} old={} cb={} inBufs={} inBytes={} inPeak={} "
                           "copy={} outPre={}\n",
                           pid, diagnosticText(level.peak), diagnosticText(level.rms),
                           diagnosticText(old), callbackCount, seen->inBufs, seen->inBytes,
                           diagnosticText(seen->inPeak), seen->copyCount,
                           diagnosticText(seen->outPeakPre));
    });
}

void MixerViewModel::pollGainReduction() {
    PIDMap<std::vector<float>> reductions;
    bool changed = false;
    for (const std::int32_t pid : tappedPIDs.get()) {
        const auto compressor = compressorSettings.get().find(pid);
        if (compressor == compressorSettings.get().end() || compressor->second.isOff())
            continue;
        auto reduction = getCompressorGainReduction(pid);
        if (reduction != valueOr(compressorGainReduction.get(), pid, std::vector<float>(3, 0.0F)))
            changed = true;
        reductions.emplace(pid, std::move(reduction));
    }
    if (changed)
        compressorGainReduction.set(std::move(reductions));
}

void MixerViewModel::pollRecordings() {
    recordingDurations.update([&](PIDMap<double>& durations) {
        for (const std::int32_t pid : recordingPIDs.get())
            durations[pid] = tapManager_->recordingDuration(pid);
    });
    checkRecordingDurations();
}

/// Off the main thread, on copies.
void MixerViewModel::queueProcessStats() {
    statsQueue_->post([model = weak_from_this(), pids = tappedPIDs.get(), last = lastCPUTimes_,
                       &processes = platform_.processTable, &mainRunLoop = platform_.mainRunLoop] {
        auto readings = collectProcessStats(processes, pids, last, mainRunLoop.now());
        mainRunLoop.post([model, readings = std::move(readings)] {
            if (const auto self = model.lock())
                self->takeProcessReadings(readings);
        });
    });
}

void MixerViewModel::takeProcessReadings(const ProcessReadings& readings) {
    if (readings.stats.empty())
        return;
    for (const auto& [pid, times] : readings.cpuTimes)
        lastCPUTimes_[pid] = times;
    setEntries(processStats, readings.stats);
}

} // namespace orvanta
