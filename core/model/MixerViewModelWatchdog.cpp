// Two watchdogs. One looks for taps whose callback has never run, at each refresh pass, and makes
// them anew from what the model knows. The other looks for taps that deliver nothing, while a view
// is open, and makes them anew from what the tap itself knew.

#include "core/model/DiagnosticText.h"
#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"
#include "core/platform/AudioProperties.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta {
namespace {

constexpr std::int64_t kDeadPolls = 10;
constexpr std::int64_t kMostRebuilds = 2;

/// A callback that has run so often has had its chance to see sound.
constexpr std::uint64_t kSettledCallbacks = 100;
constexpr std::int64_t kStalledTicks = 16;
/// A pause of the player must not pass for a fault before that.
constexpr std::int64_t kSilentTicks = 40;
constexpr Seconds kRetapPause{30.0};

} // namespace

void MixerViewModel::scanDeadTaps(const std::vector<AudioApp>& apps) {
    std::vector<DeadTap> rebuildList;
    for (const std::int32_t pid : tappedPIDs.get()) {
        const bool hasRun = tapManager_->getCallbackCount(pid) != 0;
        const AudioApp* const app = findApp(apps, pid);
        if (!hasRun && app != nullptr) {
            countDeadPoll(pid, *app, rebuildList);
        } else {
            watch_.deadTapPollCounts.erase(pid);
            watch_.deadTapRebuildCount.erase(pid);
        }
    }
    for (const DeadTap& dead : rebuildList)
        rebuildDeadTap(dead);
}

void MixerViewModel::countDeadPoll(std::int32_t pid, const AudioApp& app,
                                   std::vector<DeadTap>& rebuildList) {
    const std::int64_t rebuilds = valueOr(watch_.deadTapRebuildCount, pid, std::int64_t{0});
    if (rebuilds >= kMostRebuilds)
        return;
    if (++watch_.deadTapPollCounts[pid] < kDeadPolls)
        return;
    rebuildList.push_back({.pid = pid, .app = &app});
    watch_.deadTapPollCounts.erase(pid);
    watch_.deadTapRebuildCount[pid] = rebuilds + 1;
    logger_.error("Dead tap detected for PID %d (%s) — rebuilding (attempt %ld)", pid,
                  app.name.c_str(), static_cast<long>(rebuilds + 1));
}

/// Balance, width, crossfeed and gate keep their values in the maps alone.
void MixerViewModel::rebuildDeadTap(const DeadTap& dead) {
    const std::int32_t pid = dead.pid;
    // What was announced since it was listed may have ended it.
    if (!isTapped(pid))
        return;
    const float formerVolume = volume(pid);
    const bool wasMuted = isMuted(pid);
    const auto device = outputDeviceUID(pid);
    tapManager_->removeTap(pid);
    removeEntry(tappedPIDs, pid);
    if (!tapManager_->createTap(pid, dead.app->audioObjectID))
        return;
    insertEntry(tappedPIDs, pid);
    setEntry(volumes, pid, formerVolume);
    tapManager_->setVolume(pid, formerVolume);
    if (wasMuted)
        setMuted(pid, true);
    if (device && tapManager_->routeToDevice(pid, device))
        setEntry(appOutputDevices, pid, *device);
    if (const auto eq = entryOf(eqSettings.get(), pid); eq && !eq->isFlat())
        pushEQ(pid, *eq);
    if (const auto compressor = entryOf(compressorSettings.get(), pid);
        compressor && !compressor->isOff())
        tapManager_->setCompressor(pid, *compressor);
    if (valueOr(limiterEnabled.get(), pid, false))
        tapManager_->setLimiterEnabled(pid, true);
    if (valueOr(normalizationEnabled.get(), pid, false))
        tapManager_->setNormalizationEnabled(pid, true);
    logger_.info("Rebuilt dead tap for '%s' (PID %d)", dead.app->name.c_str(), pid);
}

void MixerViewModel::checkStall(std::int32_t pid, std::uint64_t callbackCount,
                                const std::optional<TapDiagnostics>& seen) {
    const float inPeak = seen ? seen->inPeak : 0.0F;
    if (inPeak > 0.0F) {
        watch_.hasReceivedAudio.insert(pid);
        watch_.stallPollCounts.erase(pid);
        watch_.lastRetapTime.erase(pid);
        watch_.silentSinceAudioCount.erase(pid);
        watch_.consecutiveRetapCount.erase(pid);
    } else {
        noteSilence(pid);
    }
    const bool isSilentWithCallbacks = callbackCount > kSettledCallbacks && inPeak == 0.0F &&
                                       !watch_.hasReceivedAudio.contains(pid);
    const auto lastRetap = entryOf(watch_.lastRetapTime, pid);
    const bool hasCooledDown = !lastRetap || platform_.mainRunLoop.now() - *lastRetap > kRetapPause;
    const bool isStalled = (callbackCount == 0 || isSilentWithCallbacks) && hasCooledDown &&
                           valueOr(watch_.consecutiveRetapCount, pid, std::int64_t{0}) <= 0;
    if (isStalled)
        countStall(pid, callbackCount);
}

void MixerViewModel::noteSilence(std::int32_t pid) {
    if (!watch_.hasReceivedAudio.contains(pid))
        return;
    if (++watch_.silentSinceAudioCount[pid] < kSilentTicks)
        return;
    watch_.hasReceivedAudio.erase(pid);
    watch_.silentSinceAudioCount.erase(pid);
}

void MixerViewModel::countStall(std::int32_t pid, std::uint64_t callbackCount) {
    const std::int64_t stalls = ++watch_.stallPollCounts[pid];
    if (stalls < kStalledTicks)
        return;
    diagnose([&] {
        const std::string reason =
            callbackCount == 0 ? "cb=0" : fmt::format("silent(cb={},inPeak=0)", callbackCount);
        return fmt::format("🔄 RETAP pid={} after {} stall polls ({})\n", pid, stalls, reason);
    });
    if (findApp(audioApps.get(), pid) != nullptr) {
        const std::int64_t previousRetaps =
            valueOr(watch_.consecutiveRetapCount, pid, std::int64_t{0});
        retapApp(pid);
        watch_.hasReceivedAudio.erase(pid);
        watch_.silentSinceAudioCount.erase(pid);
        watch_.consecutiveRetapCount[pid] = previousRetaps + 1;
    }
    watch_.stallPollCounts[pid] = 0;
}

/// Limiter, normalisation, width, crossfeed and gate keep their values in the maps alone.
void MixerViewModel::retapApp(std::int32_t pid) {
    watch_.lastRetapTime[pid] = platform_.mainRunLoop.now();
    const float formerVolume = volume(pid);
    const bool wasMuted = isMuted(pid);
    const auto device = outputDeviceUID(pid);
    const auto eq = tapManager_->getEQ(pid);
    const auto formerBalance = tapManager_->getBalance(pid);
    const auto compressor = tapManager_->getCompressor(pid);
    tapManager_->removeTap(pid);
    if (!tapManager_->createTap(pid)) {
        diagnose([&] { return fmt::format("🔄 RETAP FAILED for pid={}\n", pid); });
        return;
    }
    tapManager_->setVolume(pid, formerVolume);
    if (wasMuted)
        tapManager_->setMuted(pid, true);
    if (device)
        returnToDevice(pid, *device);
    if (eq)
        pushEQ(pid, *eq);
    if (formerBalance)
        tapManager_->setBalance(pid, *formerBalance);
    if (compressor)
        tapManager_->setCompressor(pid, *compressor);
    diagnose([&] {
        return fmt::format("🔄 RETAP OK pid={} vol={} muted={} device={}\n", pid,
                           diagnosticText(formerVolume), wasMuted, device.value_or("default"));
    });
}

/// A device may go between the two looks at the list.
void MixerViewModel::returnToDevice(std::int32_t pid, const std::string& deviceUID) {
    const auto giveUp = [&](std::string_view reason) {
        removeEntry(appOutputDevices, pid);
        diagnose([&] {
            return fmt::format("⚠️ RETAP: saved device {} {}, using default output\n",
                               deviceUID, reason);
        });
    };
    const auto device = getDeviceIDByUID(deviceUID);
    if (!device)
        return giveUp("not found");
    const auto devices = deviceList(platform_.audioHardware);
    if (std::ranges::find(devices, *device) == devices.end())
        return giveUp("gone");
    tapManager_->routeToDevice(pid, deviceUID);
}

} // namespace orvanta
