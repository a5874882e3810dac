#include "tests/platform/pipewire/support/PipeWireTest.h"

#include "platform/pipewire/TapName.h"

#include <iostream>
#include <unistd.h>

namespace orvanta::test {

void PipeWireTest::SetUp() {
    graph().plug({.name = "speakers"});
    graph().await("there is a default", [&] { return graph().defaultSink() == "speakers"; });
}

void PipeWireTest::TearDown() {
    if (!HasFailure())
        return;
    if (graph_)
        std::cout << graph().describe();
    std::cout << server_.logTail();
    for (const std::string& text : log_.texts())
        std::cout << "log: " << text << "\n";
}

PipeWireAudioHardware& PipeWireTest::hardware() {
    if (!hardware_)
        hardware_ = std::make_unique<PipeWireAudioHardware>(PipeWireOptions{}, log_);
    return *hardware_;
}

void PipeWireTest::killEverything() {
    graph_.reset();
    server_.killPulseBridge();
    server_.killSessionManager();
    server_.killServer();
}

void PipeWireTest::startEverything() {
    server_.startServer();
    server_.startSessionManager();
    server_.startPulseBridge();
    graph_.emplace();
    SetUp();
}

std::optional<AudioObjectID> PipeWireTest::processWith(pid_t pid) {
    for (const AudioObjectID process : readObjectList(hardware(), kAudioObjectSystemObject,
                                                      {kAudioHardwarePropertyProcessObjectList}))
        if (readInt32(hardware(), process, {kAudioProcessPropertyPID}) == pid)
            return process;
    return std::nullopt;
}

AudioObjectID PipeWireTest::awaitProcess(pid_t pid) {
    EXPECT_TRUE(eventually(soon, [&] { return processWith(pid).has_value(); }));
    return processWith(pid).value_or(kAudioObjectUnknown);
}

AudioObjectID PipeWireTest::ownProcess() {
    return awaitProcess(::getpid());
}

AudioObjectID PipeWireTest::awaitDevice(const std::string& uid) {
    EXPECT_TRUE(eventually(soon, [&] { return findDeviceID(hardware(), uid) != 0; })) << uid;
    return findDeviceID(hardware(), uid);
}

std::vector<GraphObject> PipeWireTest::tapNodes() const {
    std::vector<GraphObject> taps;
    for (const GraphObject& node : graph().nodes())
        if (pipewire::isTapName(node.get("node.name")))
            taps.push_back(node);
    return taps;
}

void PipeWireTest::awaitTapped(pid_t pid, const std::string& device) const {
    graph().await("the process plays through a tap to " + device, [&] {
        const auto taps = tapNodes();
        const auto streams = graph().playbackNodes(pid);
        return taps.size() == 1 && streams.size() == 1 &&
               graph().targets(streams[0].id) ==
                   std::vector<std::string>{taps[0].get("node.name")} &&
               graph().targets(taps[0].id) == std::vector<std::string>{device};
    });
}

void PipeWireTest::awaitPlaysTo(pid_t pid, const std::string& node) const {
    graph().await("the process plays to " + node, [&] {
        const auto streams = graph().playbackNodes(pid);
        return streams.size() == 1 &&
               graph().targets(streams[0].id) == std::vector<std::string>{node};
    });
}

} // namespace orvanta::test
