#include "tests/cli/mix/MixRig.h"

#include "cli/mix/CommandError.h"
#include "cli/mix/CommandTable.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace orvanta::test {

MixRig::MixRig()
    : speakers(server.addDevice({.uid = "speakers", .name = "Speakers"})),
      headphones(server.addDevice({.uid = "headphones", .name = "Headphones"})),
      music(server.addProgram({.pid = 101,
                               .name = "Music",
                               .bundleIdentifier = "org.music",
                               .source = embedded::constant(0.5F)})),
      speech(server.addProgram({.pid = 102,
                                .name = "Speech",
                                .bundleIdentifier = "org.speech",
                                .source = embedded::constant(0.25F)})) {
    restart();
}

MixRig::~MixRig() {
    mixer_.reset();
    model.reset();
    HotkeyManager::releaseCurrent();
}

Platform MixRig::platform() {
    return {.audioHardware = server,
            .processTable = processes_,
            .workspace = desktop_,
            .systemLog = consoleLog_,
            .mainRunLoop = runLoop,
            .serialQueues = serialQueues,
            .wallClock = wallClock,
            .audioFileWriter = audioFiles,
            .userDefaults = userDefaults,
            .hotKeyCenter = hotKeyCenter,
            .notificationCenter = notificationCenter,
            .fileViewer = fileViewer,
            .userFolders = userFolders};
}

void MixRig::restart() {
    mixer_.reset();
    model.reset();
    model = MixerViewModel::create(platform());
    mixer_.emplace(*model, platform(), consoleLog_, "/home/user");
    runLoop.runUntilIdle();
}

std::string MixRig::say(const std::string& line) {
    try {
        return cli::runLine(*mixer_, line).text;
    } catch (const cli::CommandError& error) {
        return error.what();
    }
}

float MixRig::peakOn(AudioObjectID device) {
    server.clearPlayed(device);
    server.advance(std::chrono::milliseconds(100));
    float peak = 0.0F;
    for (const float sample : server.played(device))
        peak = std::max(peak, std::abs(sample));
    return peak;
}

} // namespace orvanta::test
