#include "tests/core/model/MixerWorld.h"

#include "core/model/DeviceVolume.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace orvanta::test {
namespace {

std::string seconds(const std::vector<Seconds>& times) {
    std::string text;
    for (const Seconds time : times)
        text += fmt::format(" {}", time.count());
    return text;
}

template <class Value>
std::string difference(const char* what, const Value& expected, const Value& actual) {
    return expected == actual ? "" : fmt::format("{}: {} instead of {}\n", what, actual, expected);
}

std::string recordText(const AppSettingsByKey& records, const std::string& key) {
    const auto found = records.find(key);
    return found == records.end() ? "none" : coding::JSON(found->second).dump();
}

} // namespace

const std::array<MixerWorld::Program, 4> MixerWorld::kPrograms{{{"Music", "com.music"},
                                                                {"Browser", "com.browser"},
                                                                {"Browser", "com.browser.helper"},
                                                                {"Game", std::nullopt}}};

MixerWorld::MixerWorld() {
    reference.plug("speakers");
    startRunning();
    runLoop.runUntilIdle();
    observe();
    reference.start();
}

void MixerWorld::observe() {
    observations_.clear();
    observations_.push_back(
        model->audioLevels.observe([this](const auto&) { ++peakAnnouncements_; }));
    observations_.push_back(
        model->audioRmsLevels.observe([this](const auto&) { ++rmsAnnouncements_; }));
}

AudioApp* MixerWorld::listed(std::int32_t pid) {
    const auto found = std::ranges::find(discovery->apps, pid, &AudioApp::pid);
    return found == discovery->apps.end() ? nullptr : &*found;
}

AudioApp MixerWorld::application(std::int32_t pid) const {
    const auto found = std::ranges::find(discovery->apps, pid, &AudioApp::pid);
    return found == discovery->apps.end() ? app(pid, "Stranger") : *found;
}

void MixerWorld::appStarts(std::int32_t pid, std::size_t program, bool isPlaying) {
    unlist(pid);
    list(pid, kPrograms.at(program).name, kPrograms.at(program).bundleIdentifier, isPlaying);
}

void MixerWorld::appPlays(std::int32_t pid, bool isPlaying) {
    if (AudioApp* const app = listed(pid))
        app->isPlaying = isPlaying;
}

void MixerWorld::appIsRenamed(std::int32_t pid, const std::string& name) {
    if (AudioApp* const app = listed(pid))
        app->name = name;
}

void MixerWorld::appMoves(std::int32_t from, std::int32_t to) {
    const AudioApp* const former = listed(from);
    if (former == nullptr || listed(to) != nullptr)
        return;
    list(to, former->name, former->bundleIdentifier, former->isPlaying);
    unlist(from);
}

void MixerWorld::plug(const std::string& uid) {
    if (server.findDevice(uid) != kAudioObjectUnknown)
        return;
    const AudioObjectID device = server.addDevice({.uid = uid, .name = uid, .keepsPlayed = false});
    devices->devices.push_back({.id = device, .uid = uid, .name = uid});
    reference.plug(uid);
}

void MixerWorld::unplug(const std::string& uid) {
    server.removeDevice(server.findDevice(uid));
    std::erase_if(devices->devices, [&](const OutputDevice& each) { return each.uid == uid; });
    reference.unplug(uid);
}

void MixerWorld::timePasses(Seconds time) {
    runLoop.advance(time);
    reference.advance(time);
}

void MixerWorld::fallsSilent(std::int32_t pid, Seconds silence) {
    constexpr Seconds kWatchPeriod{8.0};
    command([](auto& mixer) { mixer.setConsoleVisible(true); });
    tapping->levels[pid] = {.rms = 0.25F, .peak = 0.5F};
    tapping->diagnostics[pid] = {.inPeak = 0.5F};
    timePasses(kWatchPeriod);
    tapping->levels[pid] = {};
    tapping->diagnostics[pid] = {};
    timePasses(silence);
}

void MixerWorld::restart() {
    model.reset();
    HotkeyManager::releaseCurrent();
    tapping->taps.clear();
    startRunning();
    observe();
    runLoop.runUntilIdle();
    reference.start();
}

AudioProfile MixerWorld::profile(std::size_t place) const {
    const auto& profiles = model->audioProfiles.get();
    if (place < profiles.size())
        return profiles[place];
    return {.id = {},
            .name = "Unknown",
            .icon = "gear",
            .createdAt = {},
            .appSettings = {{"com.music", defaultRecord()}},
            .globalSettings = {.masterVolume = 0.25F,
                               .isMasterMuted = true,
                               .recordingFormat = RecordingFormat::m4a,
                               .recordingMode = RecordingMode::both}};
}

void MixerWorld::saveProfile(const std::string& name) {
    model->saveCurrentAsProfile(name, "gear");
    reference.saveProfile(model->activeProfileID.get().value(), name, "gear");
}

std::string MixerWorld::differences() {
    return processDifferences() + tapDifferences() + storeDifferences() + deviceDifferences() +
           timerDifferences() + announcementDifferences();
}

std::string MixerWorld::processDifferences() const {
    std::string text;
    for (const std::int32_t pid : kPIDs)
        if (const auto its = test::differences(reference.process(pid), processOf(*model, pid));
            !its.empty())
            text += fmt::format("process {}: {}\n", pid, its);
    text += difference("listed", reference.listed(), listedBy(*model));
    const auto expected = reference.rest();
    const auto actual = restOf(*model);
    for (std::size_t line = 0; line < expected.size(); ++line)
        text += difference("model", expected[line], actual.at(line));
    if (reference.profiles() != model->audioProfiles.get())
        text += fmt::format("{} profiles, not the {} expected\n", model->audioProfiles.get().size(),
                            reference.profiles().size());
    return text;
}

std::string MixerWorld::tapDifferences() const {
    std::string text;
    for (const std::int32_t pid : kPIDs) {
        const bool isExpected = reference.taps().contains(pid);
        const bool isThere = tapping->taps.contains(pid);
        text += difference(fmt::format("tap of {}", pid).c_str(), isExpected, isThere);
        if (!isExpected || !isThere)
            continue;
        if (const auto its = test::differences(reference.taps().at(pid), tapping->taps.at(pid));
            !its.empty())
            text += fmt::format("tap of {}: {}\n", pid, its);
    }
    return text;
}

/// Calls count, too: a save of what is stored already is one.
std::string MixerWorld::storeDifferences() const {
    std::string text = difference("calls to the store", reference.storeCalls(), settings->calls);
    if (reference.records() == settings->records)
        return text;
    AppSettingsByKey all = reference.records();
    all.insert(settings->records.begin(), settings->records.end());
    for (const auto& [key, record] : all)
        text += difference(("record of " + key).c_str(), recordText(reference.records(), key),
                           recordText(settings->records, key));
    return text;
}

std::string MixerWorld::deviceDifferences() {
    std::string text;
    for (const auto& [uid, volume] : reference.deviceVolumes())
        text += difference(uid.c_str(), volume, readDeviceVolume(server, server.findDevice(uid)));
    return text;
}

std::string MixerWorld::timerDifferences() const {
    const WaitingTasks waiting = runLoop.waiting();
    return difference("timers", seconds(reference.timerIntervals()),
                      seconds(waiting.timerIntervals)) +
           difference("waiting tasks", reference.waitingNotices(), waiting.posted);
}

/// A tick announces both meters once, or neither; the entries of those that go announce peaks.
std::string MixerWorld::announcementDifferences() const {
    const int others = peakAnnouncements_ - rmsAnnouncements_;
    return difference("RMS announcements", reference.meterChanges(), rmsAnnouncements_) +
           difference("peak announcements besides", std::clamp(others, 0, reference.releases()),
                      others);
}

} // namespace orvanta::test
