// Time, levels, and the watch over taps that deliver nothing.

#include "tests/core/model/MixerReference.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvanta::test {
namespace {

const std::vector<float> kNoReduction(3, 0.0F);

} // namespace

/// Of what falls due at the same time, what has waited longest comes first; a pass and statistics
/// are only queued by their timers.
void MixerReference::advance(Seconds time) {
    const Instant end = now_ + wholeNanoseconds(time);
    for (;;) {
        Instant next = refreshTimer_.next;
        if (levelTimer_)
            next = std::min(next, levelTimer_->next);
        for (const Notice& notice : notices_)
            next = std::min(next, notice.due);
        if (next > end)
            break;
        now_ = next;
        std::erase_if(notices_, [&](const Notice& notice) {
            if (notice.due > now_)
                return false;
            if (notice.file && notice.file == lastRecording_)
                showsRecordingComplete_ = false;
            return true;
        });
        std::vector<std::int32_t> read;
        if (levelTimer_ && levelTimer_->next == now_)
            read = tick();
        if (refreshTimer_.next == now_)
            refreshTimerFires();
        for (const std::int32_t pid : read)
            processes_[pid].hasStats = true;
    }
    now_ = end;
}

void MixerReference::setPopoverVisible(bool isVisible) {
    isPopoverVisible_ = isVisible;
    settleLevelTimer();
}

void MixerReference::setConsoleVisible(bool isVisible) {
    isConsoleVisible_ = isVisible;
    settleLevelTimer();
}

void MixerReference::settleLevelTimer() {
    const Seconds interval(isPopoverVisible_ || isConsoleVisible_ ? 1.0 / 60.0 : 0.125);
    if (tapped().empty())
        levelTimer_.reset();
    else if (!levelTimer_ || levelTimer_->interval != interval)
        levelTimer_ = {interval, now_ + wholeNanoseconds(interval)};
}

std::vector<Seconds> MixerReference::timerIntervals() const {
    std::vector<Seconds> intervals{refreshTimer_.interval};
    if (levelTimer_)
        intervals.insert(intervals.begin(), levelTimer_->interval);
    return intervals;
}

std::optional<AudioLevel> MixerReference::levelOf(std::int32_t pid) {
    const auto level = rig_.tapping->levels.find(pid);
    if (tapOf(pid) == nullptr || level == rig_.tapping->levels.end())
        return std::nullopt;
    return level->second;
}

std::uint64_t MixerReference::callbacksOf(std::int32_t pid) {
    if (tapOf(pid) == nullptr)
        return 0;
    const auto count = rig_.tapping->callbackCounts.find(pid);
    return count == rig_.tapping->callbackCounts.end() ? 1'000'000 : count->second;
}

std::vector<std::int32_t> MixerReference::tick() {
    levelTimer_->next += wholeNanoseconds(levelTimer_->interval);
    ++ticks_;
    const bool isViewOpen = isPopoverVisible_ || isConsoleVisible_;
    showLevels();
    if (isViewOpen && ticks_ % 4 == 0)
        showGainReductions();
    bool isAnyRecording = false;
    for (auto& [pid, its] : processes_) {
        if (!its.isRecording)
            continue;
        its.recorded = recordedBy(pid);
        isAnyRecording = true;
    }
    if (isAnyRecording)
        checkRecordingDurations();
    if (!isViewOpen || ++ticksSinceStats_ < 60)
        return {};
    ticksSinceStats_ = 0;
    std::vector<std::int32_t> read = tapped();
    std::erase_if(read, [&](std::int32_t pid) { return !rig_.processTable.tasks.contains(pid); });
    return read;
}

/// Meters move together, and only when a peak has changed.
void MixerReference::showLevels() {
    const bool watches = (isPopoverVisible_ || isConsoleVisible_) && ticks_ % 480 == 0;
    std::map<std::int32_t, AudioLevel> shown;
    bool changed = false;
    for (const std::int32_t pid : tapped()) {
        const float before = process(pid).peak.value_or(0.0F);
        const auto level = levelOf(pid);
        if (!level && before > 0.005F) {
            shown[pid] = {};
            changed = true;
        }
        if (!level)
            continue;
        if (watches)
            watch(pid);
        if (level->peak > 0.005F)
            processes_[pid].lastActive = now();
        changed = changed || level->peak != before;
        shown[pid] = *level;
    }
    if (!changed)
        return;
    ++meterChanges_;
    for (const auto& [pid, level] : shown) {
        ReferenceProcess& its = processes_[pid];
        if (level.peak != its.peak.value_or(0.0F))
            its.peak = level.peak;
        its.rms = level.rms;
    }
}

void MixerReference::showGainReductions() {
    std::map<std::int32_t, std::vector<float>> reductions;
    bool changed = false;
    for (const std::int32_t pid : tapped()) {
        const ReferenceProcess& its = process(pid);
        if (!its.compressor || its.compressor->isOff())
            continue;
        const auto scripted = rig_.tapping->gainReductions.find(pid);
        const bool isKnown =
            tapOf(pid) != nullptr && scripted != rig_.tapping->gainReductions.end();
        reductions[pid] = isKnown ? scripted->second : kNoReduction;
        changed = changed || reductions[pid] != its.gainReduction.value_or(kNoReduction);
    }
    if (!changed)
        return;
    for (auto& [pid, its] : processes_)
        its.gainReduction.reset();
    for (auto& [pid, reduction] : reductions)
        processes_[pid].gainReduction = std::move(reduction);
}

void MixerReference::watch(std::int32_t pid) {
    ReferenceProcess& its = processes_[pid];
    const std::uint64_t callbacks = callbacksOf(pid);
    const auto seen = rig_.tapping->diagnostics.find(pid);
    const float peak = seen == rig_.tapping->diagnostics.end() ? 0.0F : seen->second.inPeak;
    if (peak > 0.0F) {
        its.hasReceivedAudio = true;
        its.stalls.reset();
        its.lastRetap.reset();
        its.silentTicks.reset();
        its.retaps.reset();
    } else if (its.hasReceivedAudio) {
        its.silentTicks = its.silentTicks.value_or(0) + 1;
        if (its.silentTicks >= 40) {
            its.hasReceivedAudio = false;
            its.silentTicks.reset();
        }
    }
    const bool neverHeard = callbacks > 100 && peak == 0.0F && !its.hasReceivedAudio;
    const bool hasCooledDown = !its.lastRetap || now() - *its.lastRetap > Seconds(30.0);
    if ((callbacks > 0 && !neverHeard) || !hasCooledDown || its.retaps.value_or(0) > 0)
        return;
    its.stalls = its.stalls.value_or(0) + 1;
    if (its.stalls < 16)
        return;
    its.stalls = 0;
    if (std::ranges::find(listed_, pid, &App::pid) == listed_.end())
        return;
    its.lastRetap = now();
    its.hasReceivedAudio = false;
    its.silentTicks.reset();
    its.retaps = its.retaps.value_or(0) + 1;
    retap(pid);
}

/// A new tap with the old one's equaliser, balance and compressor, and nothing else of its chain.
void MixerReference::retap(std::int32_t pid) {
    ReferenceProcess& its = processes_[pid];
    const Tap former = taps_.at(pid);
    taps_.erase(pid);
    if (!createTap(pid, std::nullopt))
        return;
    pushVolume(pid, its.volume.value_or(1.0F));
    pushMuted(pid, its.isMuted);
    if (its.device && deviceVolumes_.contains(*its.device))
        route(pid, its.device);
    else
        its.device.reset();
    Tap& tap = taps_.at(pid);
    tap.eq = former.eq;
    tap.balance = former.balance;
    tap.compressor = former.compressor;
}

} // namespace orvanta::test
