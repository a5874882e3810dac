#include "tests/support/EngineRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {

embedded::DeviceSettings EngineRig::speakersByDefault() {
    return {.uid = "speakers", .name = "Speakers", .framesPerCycle = frames};
}

EngineRig::EngineRig(const embedded::ServerSettings& settings,
                     embedded::DeviceSettings speakersSettings)
    : server(settings),
      speakers(server.addDevice(speakersSettings)),
      program(
          server.addProgram({.pid = pid, .name = "Player", .source = embedded::constant(0.5F)})),
      manager(std::make_unique<AudioTapManager>(platformWith(server))) {
    processTable.names[pid] = "player";
    forget();
}

AudioObjectID EngineRig::addDevice(const std::string& uid, FourCharCode transport) {
    auto device = speakersByDefault();
    device.uid = uid;
    device.name = uid;
    device.transport = transport;
    return server.addDevice(device);
}

std::vector<float> EngineRig::nextCycle(AudioObjectID device) {
    server.clearPlayed(device);
    server.step(device);
    return server.played(device);
}

std::vector<std::string> EngineRig::lifecycleCalls() {
    return server.journal().operations(embedded::Journal::lifecycle());
}

void EngineRig::forget() {
    server.journal().clear();
    log.clear();
}

void EngineRig::expectNothingLeft() {
    const auto left = server.holdings();
    EXPECT_TRUE(left.taps.empty());
    EXPECT_TRUE(left.aggregates.empty());
    EXPECT_EQ(left.ioProcs, 0U);
    EXPECT_THAT(nextCycle(), testing::Each(0.5F)) << "the process plays on its own";
}

} // namespace orvanta::test
