#include "tests/e2e/support/MixerUnderTest.h"

#include "core/platform/AudioProperties.h"

#include <algorithm>
#include <stdexcept>

namespace orvanta::test {

namespace {

constexpr AudioObjectPropertyAddress processList = {kAudioHardwarePropertyProcessObjectList};
constexpr AudioObjectPropertyAddress processID = {kAudioProcessPropertyPID};
constexpr AudioObjectPropertyAddress runningOutput = {kAudioProcessPropertyIsRunningOutput};

constexpr Seconds bound{10};

} // namespace

MixerUnderTest::MixerUnderTest() : hardware_({}, log_), manager_(platform()) {
    mainRunLoop_.start("main");
    if (!eventually(bound, [this] { return hardware_.isServerReachable(); }))
        throw std::runtime_error("no server answers the mixer" + logText());
}

AudioObjectID MixerUnderTest::processObject(pid_t pid) {
    const auto processes = readObjectList(hardware_, kAudioObjectSystemObject, processList);
    const auto found = std::ranges::find_if(processes, [&](AudioObjectID process) {
        return readInt32(hardware_, process, processID) == pid;
    });
    return found == processes.end() ? kAudioObjectUnknown : *found;
}

AudioObjectID MixerUnderTest::awaitProcess(pid_t pid) {
    AudioObjectID process = kAudioObjectUnknown;
    eventually(bound, [&] {
        process = processObject(pid);
        return process != kAudioObjectUnknown;
    });
    if (process == kAudioObjectUnknown)
        throw std::runtime_error("process " + std::to_string(pid) + " is not listed" + logText());
    return process;
}

bool MixerUnderTest::isRunningOutput(AudioObjectID process) {
    return readUInt32(hardware_, process, runningOutput).value_or(0) != 0;
}

AudioObjectID MixerUnderTest::awaitDevice(const std::string& uid) {
    if (!eventually(bound, [&] { return findDeviceID(hardware_, uid) != kAudioObjectUnknown; }))
        throw std::runtime_error("device " + uid + " is not listed" + logText());
    return findDeviceID(hardware_, uid);
}

std::string MixerUnderTest::deviceName(const std::string& uid) {
    return readString(hardware_, findDeviceID(hardware_, uid), {kAudioObjectPropertyName})
        .value_or("");
}

void MixerUnderTest::tap(pid_t pid, float volume) {
    const AudioObjectID process = awaitProcess(pid);
    if (!manager_.createTap(pid, process))
        throw std::runtime_error("no tap" + logText());
    manager_.setVolume(pid, volume);
    if (!isRunningOutput(process))
        return;
    // The first callback after the volume was set might have read it before: two are safe.
    const std::uint64_t before = manager_.getCallbackCount(pid);
    if (!eventually(bound, [&] { return manager_.getCallbackCount(pid) >= before + 2; }))
        throw std::runtime_error("the tap's callback does not run" + logText());
}

std::string MixerUnderTest::logText() const {
    std::string text = "\n-- the mixer's log\n";
    for (const std::string& line : log_.texts())
        text += line + (line.ends_with('\n') ? "" : "\n");
    return text;
}

} // namespace orvanta::test
