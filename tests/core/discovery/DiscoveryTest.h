#pragma once

#include "core/discovery/AudioProcessDiscovery.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::test {

/// Processes that play, and what of them the discovery lists.
class DiscoveryTest : public testing::Test {
protected:
    /// What is asked of the discovery.
    virtual std::vector<AudioApp> discover() = 0;

    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const AudioApp& app : discover())
            result.push_back(app.name);
        return result;
    }

    /// A process that has opened audio.
    AudioObjectID play(std::int32_t pid, bool playing = true) {
        return server.addProgram({.pid = pid, .playing = playing});
    }

    RunningApplication& runApp(std::int32_t pid, std::optional<std::string> name,
                               std::optional<std::string> bundle = std::nullopt) {
        return workspace.applications[pid] = {.processIdentifier = pid,
                                              .localizedName = std::move(name),
                                              .bundleIdentifier = std::move(bundle)};
    }

    EmbeddedAudioServer server;
    PlatformFakes fakes;
    ScriptedProcessTable& processes = fakes.processTable;
    ScriptedWorkspace& workspace = fakes.workspace;
    AudioProcessDiscovery discovery{fakes.platformWith(server)};
};

} // namespace orvanta::test
