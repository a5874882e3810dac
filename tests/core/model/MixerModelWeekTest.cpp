// A week of an ordinary desktop in virtual time: nothing may grow, pile up or tick for nothing.

#include "platform/embedded/sounds/RandomSequence.h"
#include "tests/support/model/ModelRig.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>

namespace orvanta::test {
namespace {

using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::Le;
using testing::SizeIs;

#ifdef ORVANTA_HAS_REALTIME_TRAP
constexpr int kDays = 7;
#else
// A sanitizer takes ten times as long; what could grow has grown after two days.
constexpr int kDays = 2;
#endif

constexpr int kHours = 24;
constexpr int kNight = 3;
/// The console is open, and the user plays with it.
constexpr int kEvening = 20;
constexpr int kMinutes = 60;

constexpr std::array<const char*, 12> kPrograms{"Music",  "Browser", "Game",  "Video",
                                                "Editor", "Mail",    "Chat",  "Radio",
                                                "Player", "Phone",   "Films", "Notes"};

class AWeek : public testing::Test, public ModelRig {
protected:
    AWeek() { startRunning(); }

    void day();
    void playWithTheConsole();
    void minute();
    void hourOfRest();
    void expectNothingPiledUp();

    /// The counts, for whoever reads the log.
    void report() const;

private:
    using Random = embedded::RandomSequence;

    [[nodiscard]] bool happensOncePer(std::uint32_t minutes) { return random_.below(minutes) == 0; }

    [[nodiscard]] const AudioApp* anyApp();
    [[nodiscard]] std::optional<std::int32_t> anyTapped();
    std::size_t pass(Seconds time);

    void programsComeAndGo();
    void devicesComeAndGo();
    void soundsChange();
    void commandOfNow();
    void effectOfNow(std::int32_t pid);
    void profileOfNow();
    void drag(std::int32_t pid);

    Random random_{20261122};
    std::int32_t lastPID_ = 1000;
    PIDSet everTapped_;
    PIDSet untappedByHand_;
    std::size_t profilesMade_ = 0;

    std::size_t tasksRun_ = 0;
    std::size_t ticksAtRest_ = 0;
    std::size_t passesAtRest_ = 0;
    std::size_t hoursAtRest_ = 0;
    std::size_t most_ = 0;
};

const AudioApp* AWeek::anyApp() {
    auto& apps = discovery->apps;
    return apps.empty() ? nullptr : &apps[random_.below(static_cast<std::uint32_t>(apps.size()))];
}

std::optional<std::int32_t> AWeek::anyTapped() {
    const PIDSet& tapped = model->tappedPIDs.get();
    if (tapped.empty())
        return std::nullopt;
    return *std::next(tapped.begin(), random_.below(static_cast<std::uint32_t>(tapped.size())));
}

std::size_t AWeek::pass(Seconds time) {
    const std::size_t ran = runLoop.advance(time);
    tasksRun_ += ran;
    const PIDSet& tapped = model->tappedPIDs.get();
    everTapped_.insert(tapped.begin(), tapped.end());
    return ran;
}

/// Some 40 starts a day. Every fifth end is that of a helper, whose successor is there at once.
void AWeek::programsComeAndGo() {
    if (happensOncePer(35) || discovery->apps.empty()) {
        const std::string name = kPrograms[random_.below(kPrograms.size())];
        list(++lastPID_, name, "com." + name, happensOncePer(2));
        processTable.tasks[lastPID_] = {.residentSize = 1U << 20U};
    }
    if (discovery->apps.size() > 3 && happensOncePer(40)) {
        const AudioApp gone = *anyApp();
        unlist(gone.pid);
        tapping->levels.erase(gone.pid);
        tapping->callbackCounts.erase(gone.pid);
        tapping->diagnostics.erase(gone.pid);
        tapping->gainReductions.erase(gone.pid);
        tapping->recordingDurations.erase(gone.pid);
        processTable.tasks.erase(gone.pid);
        if (happensOncePer(5))
            list(++lastPID_, gone.name, gone.bundleIdentifier, gone.isPlaying);
    }
    for (AudioApp& app : discovery->apps)
        if (happensOncePer(30))
            app.isPlaying = !app.isPlaying;
}

void AWeek::devicesComeAndGo() {
    if (!happensOncePer(120))
        return;
    const std::string uid = "headphones";
    if (server.removeDevice(server.findDevice(uid))) {
        std::erase_if(devices->devices, [&](const OutputDevice& each) { return each.uid == uid; });
        return;
    }
    const AudioObjectID device = server.addDevice({.uid = uid, .name = uid, .keepsPlayed = false});
    devices->devices.push_back({.id = device, .uid = uid, .name = uid});
}

void AWeek::soundsChange() {
    for (const std::int32_t pid : model->tappedPIDs.get()) {
        const float peak = random_.below(3) == 0 ? 0.0F : random_.unipolar();
        tapping->levels[pid] = {.rms = peak * 0.5F, .peak = peak};
        tapping->diagnostics[pid] = {.inPeak = peak};
        tapping->gainReductions[pid] = {peak, 0.0F, 0.0F};
        tapping->recordingDurations[pid] += 60.0;
        if (happensOncePer(600))
            tapping->callbackCounts[pid] = 0;
        else if (happensOncePer(60))
            tapping->callbackCounts.erase(pid);
    }
}

void AWeek::effectOfNow(std::int32_t pid) {
    switch (random_.below(12)) {
    case 0:
        return model->setEQ(pid, static_cast<int>(random_.below(10)), random_.bipolar() * 12.0F);
    case 1:
        return model->setCompressor(pid, CompressorPreset::music);
    case 2:
        return model->setCompressor(pid, CompressorPreset::off);
    case 3:
        return model->setLimiterEnabled(pid, true);
    case 4:
        return model->setNormalizationEnabled(pid, true);
    case 5:
        return model->setStereoWidth(pid, 1.0F + random_.bipolar());
    case 6:
        return model->setCrossfeed(pid, random_.unipolar());
    case 7:
        return model->setNoiseGate(pid, true, -50.0F);
    case 8:
        return model->routeApp(pid, "headphones");
    case 9:
        return model->routeApp(pid, std::nullopt);
    case 10:
        return model->toggleSolo(pid);
    default:
        return model->toggleMute(pid);
    }
}

void AWeek::profileOfNow() {
    const auto& profiles = model->audioProfiles.get();
    if (profiles.size() < 4) {
        model->saveCurrentAsProfile("Profile", "gear");
        ++profilesMade_;
        return;
    }
    const AudioProfile first = profiles.front();
    if (happensOncePer(2)) {
        model->deleteProfile(first.id);
        --profilesMade_;
    } else {
        model->applyProfile(first);
    }
}

void AWeek::commandOfNow() {
    if (const AudioApp* const app = anyApp(); app != nullptr && happensOncePer(15)) {
        if (model->isTapped(app->pid))
            untappedByHand_.insert(app->pid);
        model->toggleTap(*app);
    }
    if (happensOncePer(700))
        model->autoTapEnabled.set(!model->autoTapEnabled.get());
    const auto pid = anyTapped();
    if (!pid)
        return;
    if (happensOncePer(10))
        effectOfNow(*pid);
    if (happensOncePer(60))
        model->toggleRecording(*pid);
    if (happensOncePer(240))
        profileOfNow();
    if (happensOncePer(240))
        model->toggleMuteAll();
}

void AWeek::minute() {
    programsComeAndGo();
    devicesComeAndGo();
    soundsChange();
    commandOfNow();
    pass(Seconds(60.0));
}

void AWeek::drag(std::int32_t pid) {
    for (int step = 0; step < 60; ++step) {
        model->setVolume(pid, static_cast<float>(step) / 60.0F);
        pass(Seconds(1.0 / 60.0));
    }
}

void AWeek::playWithTheConsole() {
    if (const auto pid = anyTapped()) {
        effectOfNow(*pid);
        drag(*pid);
    }
}

/// Nobody looks, nothing comes or goes: only the timers tick. A tick of the refresh timer queues
/// discovery, and that the pass.
void AWeek::hourOfRest() {
    const bool isAnyTapped = !model->tappedPIDs.get().empty();
    const bool isAnyPlaying = std::ranges::any_of(model->audioApps.get(), &AudioApp::isPlaying);
    discovery->passes = 0;
    const std::size_t ran = pass(Seconds(3600.0));
    const auto passes = static_cast<std::size_t>(discovery->passes);
    EXPECT_EQ(passes, isAnyPlaying ? 1800U : 360U);
    EXPECT_EQ(ran, 3 * passes + (isAnyTapped ? 8U * 3600U : 0U));
    ticksAtRest_ += ran - 3 * passes;
    passesAtRest_ += passes;
    ++hoursAtRest_;
}

PIDSet keysOf(const PIDSet& pids) {
    return pids;
}

template <class Value>
PIDSet keysOf(const PIDMap<Value>& map) {
    PIDSet keys;
    for (const auto& [pid, value] : map)
        keys.insert(pid);
    return keys;
}

template <class Value>
PIDSet keysOf(const Published<Value>& published) {
    return keysOf(published.get());
}

void AWeek::expectNothingPiledUp() {
    const TapWatch& watch = model->tapWatch();
    const PIDSet& tapped = model->tappedPIDs.get();
    std::size_t entries = 0;
    const auto belongsTo = [&](const PIDSet& pids, const char* name, const auto& map) {
        const PIDSet keys = keysOf(map);
        entries += keys.size();
        EXPECT_THAT(keys, IsSubsetOf(pids)) << name;
    };
    for (const auto& [pid, tap] : tapping->taps)
        EXPECT_TRUE(tapped.contains(pid)) << "a tap that nobody knows of";

    belongsTo(tapped, "tappedAppNames", model->tappedAppNames());
    belongsTo(tapped, "tappedBundleIDs", model->tappedBundleIDs());
    belongsTo(tapped, "volumes", model->volumes);
    belongsTo(tapped, "mutedPIDs", model->mutedPIDs);
    belongsTo(tapped, "appOutputDevices", model->appOutputDevices);
    belongsTo(tapped, "eqSettings", model->eqSettings);
    belongsTo(tapped, "audioLevels", model->audioLevels);
    belongsTo(tapped, "balances", model->balances);
    belongsTo(tapped, "compressorSettings", model->compressorSettings);
    belongsTo(tapped, "stallPollCounts", watch.stallPollCounts);
    belongsTo(tapped, "lastRetapTime", watch.lastRetapTime);
    belongsTo(tapped, "hasReceivedAudio", watch.hasReceivedAudio);
    belongsTo(tapped, "silentSinceAudioCount", watch.silentSinceAudioCount);
    belongsTo({}, "normalizationGain", model->normalizationGain);

    // A tap that is given back leaves these for the next one.
    PIDSet tappedOrUntapped = untappedByHand_;
    tappedOrUntapped.insert(tapped.begin(), tapped.end());
    belongsTo(tappedOrUntapped, "compressorGainReduction", model->compressorGainReduction);
    belongsTo(tappedOrUntapped, "limiterEnabled", model->limiterEnabled);
    belongsTo(tappedOrUntapped, "normalizationEnabled", model->normalizationEnabled);
    belongsTo(tappedOrUntapped, "stereoWidths", model->stereoWidths);
    belongsTo(tappedOrUntapped, "crossfeedAmounts", model->crossfeedAmounts);
    belongsTo(tappedOrUntapped, "noiseGateEnabled", model->noiseGateEnabled);
    belongsTo(tappedOrUntapped, "noiseGateThresholds", model->noiseGateThresholds);
    belongsTo(tappedOrUntapped, "processStats", model->processStats);
    belongsTo(tappedOrUntapped, "deadTapPollCounts", watch.deadTapPollCounts);

    // And a process that goes leaves these.
    belongsTo(everTapped_, "audioRmsLevels", model->audioRmsLevels);
    belongsTo(everTapped_, "soloedPIDs", model->soloedPIDs);
    belongsTo(everTapped_, "recordingPIDs", model->recordingPIDs);
    belongsTo(everTapped_, "recordingDurations", model->recordingDurations);
    belongsTo(everTapped_, "deadTapRebuildCount", watch.deadTapRebuildCount);
    belongsTo(everTapped_, "consecutiveRetapCount", watch.consecutiveRetapCount);
    belongsTo(everTapped_, "lastActiveTime", model->lastActiveTime());

    EXPECT_THAT(model->audioApps.get(), SizeIs(discovery->apps.size()));
    EXPECT_THAT(model->audioProfiles.get(), SizeIs(profilesMade_));
    EXPECT_THAT(settings->records, SizeIs(Le(kPrograms.size())));
    most_ = std::max(most_, entries);
}

void AWeek::day() {
    for (int hour = 0; hour < kHours; ++hour) {
        if (hour == kNight) {
            hourOfRest();
            continue;
        }
        model->setConsoleVisible(hour == kEvening);
        for (int each = 0; each < kMinutes; ++each) {
            if (hour == kEvening)
                playWithTheConsole();
            minute();
            const WaitingTasks waiting = runLoop.waiting();
            const bool isAnyTapped = !model->tappedPIDs.get().empty();
            ASSERT_THAT(waiting.timerIntervals, SizeIs(isAnyTapped ? 2 : 1));
            ASSERT_EQ(waiting.posted, 0U) << "a recording's notice is gone by now";
        }
        model->setConsoleVisible(false);
        expectNothingPiledUp();
        forget();
    }
}

void AWeek::report() const {
    std::cout << fmt::format(
        "{} days: {} programs, {} of them tapped, {} timer ticks and tasks, {} entries at most\n"
        "at rest: {} level ticks and {} refresh passes in {} hours\n",
        kDays, lastPID_ - 1000, everTapped_.size(), tasksRun_, most_, ticksAtRest_, passesAtRest_,
        hoursAtRest_);
}

TEST_F(AWeek, LeavesNothingBehindAndTicksNoMoreThanItsTimers) {
    for (int each = 0; each < kDays && !HasFatalFailure(); ++each)
        day();
    report();
    model.reset();
    EXPECT_THAT(runLoop.waiting().timerIntervals, IsEmpty());
}

} // namespace
} // namespace orvanta::test
