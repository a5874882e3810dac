#pragma once

#include "core/platform/AudioProperties.h"
#include "platform/pipewire/PipeWireAudioHardware.h"
#include "tests/e2e/support/AudioGraph.h"
#include "tests/e2e/support/PrivateAudioServer.h"
#include "tests/platform/pipewire/support/OwnStream.h"
#include "tests/platform/pipewire/support/PlayedTap.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace orvanta::test {

inline constexpr AudioObjectPropertyAddress mainVolume{kAudioDevicePropertyVolumeScalar,
                                                       kAudioObjectPropertyScopeOutput, 0};

/// A private server with one device, "speakers", and the adaptor on it.
class PipeWireTest : public testing::Test {
protected:
    static constexpr Seconds soon{10};

    void SetUp() override;
    /// Tells what there was when a test has failed.
    void TearDown() override;

    /// Made on first use.
    PipeWireAudioHardware& hardware();

    [[nodiscard]] const AudioGraph& graph() const { return *graph_; }

    /// Kills the server and all that depends on it.
    void killEverything();
    /// Starts all of it again, with "speakers".
    void startEverything();

    /// The process object of a process once it is listed; fails and answers 0 when it never is.
    AudioObjectID awaitProcess(pid_t pid);
    AudioObjectID ownProcess();
    AudioObjectID awaitDevice(const std::string& uid);

    [[nodiscard]] std::optional<AudioObjectID> processWith(pid_t pid);

    /// The nodes of taps that are in the server.
    [[nodiscard]] std::vector<GraphObject> tapNodes() const;
    /// Waits until a tap's node has this process's stream in front and the device behind it.
    void awaitTapped(pid_t pid, const std::string& device) const;
    /// Waits until the process's stream plays to this node and no other.
    void awaitPlaysTo(pid_t pid, const std::string& node) const;

    PrivateAudioServer server_;
    RecordingLog log_;

private:
    std::optional<AudioGraph> graph_{std::in_place};
    std::unique_ptr<PipeWireAudioHardware> hardware_;
};

} // namespace orvanta::test
