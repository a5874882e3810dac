// The start, and the passes that bring the taps in line with the applications that are there.

#include "tests/core/model/MixerReference.h"

#include <algorithm>
#include <utility>

namespace orvanta::test {
namespace {

constexpr Seconds kPlaying{2.0};
constexpr Seconds kIdle{10.0};

} // namespace

void MixerReference::start() {
    processes_.clear();
    taps_.clear();
    listed_.clear();
    mutedBeforeSolo_.clear();
    activeProfile_.reset();
    masterVolume_ = deviceVolumes_.at(rig_.devices->defaultUID);
    volumeBeforeMuteAll_ = 1.0F;
    isMasterMuted_ = false;
    recordingFormat_ = RecordingFormat::wav;
    recordingMode_ = RecordingMode::processed;
    maxRecordingDuration_ = 7200.0;
    lastRecording_.reset();
    lastRecordingName_.reset();
    showsRecordingComplete_ = false;
    for (Notice& notice : notices_)
        notice.file.reset();
    isPopoverVisible_ = false;
    isConsoleVisible_ = false;
    levelTimer_.reset();
    ticks_ = 0;
    ticksSinceStats_ = 0;
    if (storedAutoTap_)
        setAutoTapEnabled(*storedAutoTap_);
    refreshTimer_ = {kPlaying, now_ + wholeNanoseconds(kPlaying)};
    pass();
}

void MixerReference::refreshTimerFires() {
    const bool isAnyPlaying = std::ranges::count(listed_, true, &App::isPlaying) > 0;
    refreshTimer_.interval = isAnyPlaying ? kPlaying : kIdle;
    refreshTimer_.next = now_ + wholeNanoseconds(refreshTimer_.interval);
    pass();
}

void MixerReference::refreshAppsSync() {
    pass();
}

std::vector<MixerReference::App> MixerReference::discover() const {
    std::vector<App> apps;
    for (const AudioApp& app : rig_.discovery->apps)
        apps.push_back({app.pid, app.audioObjectID, app.name,
                        app.bundleIdentifier.value_or(app.name), app.isPlaying});
    return apps;
}

void MixerReference::pass() {
    const std::vector<App> apps = discover();
    const auto whoPlays = [](const std::vector<App>& list) {
        std::map<std::int32_t, bool> playing;
        for (const App& app : list)
            playing[app.pid] = app.isPlaying;
        return playing;
    };
    if (whoPlays(listed_) != whoPlays(apps))
        listed_ = apps;
    followVanished(apps);
    restore(apps);
    rebuildDeadTaps(apps);
    autoTap(apps);
    settleLevelTimer();
}

void MixerReference::followVanished(const std::vector<App>& apps) {
    for (const std::int32_t pid : tapped()) {
        if (std::ranges::find(apps, pid, &App::pid) != apps.end())
            continue;
        const auto next = std::ranges::find(apps, process(pid).name.value(), &App::name);
        if (next != apps.end() && !isTapped(next->pid)) {
            move(pid, *next);
            continue;
        }
        const std::string key = process(pid).key.value();
        records_.erase(key);
        storeCalls_.push_back("remove " + key);
        taps_.erase(pid);
        purge(pid);
    }
}

void MixerReference::move(std::int32_t pid, const App& next) {
    const ReferenceProcess former = process(pid);
    taps_.erase(pid);
    purge(pid);
    if (!createTap(next.pid, next.object))
        return;
    enter(next);
    processes_[next.pid].volume = former.volume.value_or(1.0F);
    pushVolume(next.pid, former.volume.value_or(1.0F));
    if (former.isMuted)
        mute(next.pid, true);
    if (former.device && route(next.pid, former.device))
        processes_[next.pid].device = former.device;
}

/// What a gone process leaves behind.
void MixerReference::purge(std::int32_t pid) {
    const ReferenceProcess its = process(pid);
    ReferenceProcess left;
    left.rms = its.rms;
    left.isSoloed = its.isSoloed;
    left.isRecording = its.isRecording;
    left.recorded = its.recorded;
    left.rebuilds = its.rebuilds;
    left.retaps = its.retaps;
    left.lastActive = its.lastActive;
    processes_[pid] = left;
    ++releases_;
}

void MixerReference::restore(const std::vector<App>& apps) {
    for (const App& app : apps) {
        const auto record = records_.find(app.key);
        if (isTapped(app.pid) || record == records_.end() || !record->second.isTapped ||
            !createTap(app.pid, app.object))
            continue;
        enter(app);
        putBack(app.pid, record->second);
    }
}

void MixerReference::rebuildDeadTaps(const std::vector<App>& apps) {
    std::vector<App> dead;
    for (const std::int32_t pid : tapped()) {
        ReferenceProcess& its = processes_[pid];
        const auto app = std::ranges::find(apps, pid, &App::pid);
        if (callbacksOf(pid) > 0 || app == apps.end()) {
            its.deadPolls.reset();
            its.rebuilds.reset();
        } else if (its.rebuilds.value_or(0) < 2) {
            its.deadPolls = its.deadPolls.value_or(0) + 1;
            if (its.deadPolls < 10)
                continue;
            its.deadPolls.reset();
            its.rebuilds = its.rebuilds.value_or(0) + 1;
            dead.push_back(*app);
        }
    }
    for (const App& app : dead)
        rebuild(app);
}

void MixerReference::rebuild(const App& app) {
    ReferenceProcess& its = processes_[app.pid];
    taps_.erase(app.pid);
    its.isTapped = createTap(app.pid, app.object);
    if (!its.isTapped)
        return;
    pushVolume(app.pid, its.volume.emplace(its.volume.value_or(1.0F)));
    pushMuted(app.pid, its.isMuted);
    if (its.device)
        route(app.pid, its.device);
    if (its.eq && !its.eq->isFlat())
        pushEQ(app.pid, *its.eq);
    if (its.compressor)
        pushCompressor(app.pid, *its.compressor);
    Tap& tap = taps_.at(app.pid);
    tap.isLimiterEnabled = its.limiter.value_or(false);
    tap.isNormalizationEnabled = its.normalization.value_or(false);
}

void MixerReference::autoTap(const std::vector<App>& apps) {
    for (const App& app : apps) {
        if (!storedAutoTap_.value_or(false) || !app.isPlaying || isTapped(app.pid) ||
            !createTap(app.pid, app.object))
            continue;
        enter(app);
        processes_[app.pid].volume = 1.0F;
        if (isMasterMuted_)
            mute(app.pid, true);
        save(app.pid);
    }
}

} // namespace orvanta::test
