#pragma once

#include "platform/qt/automation/IntentService.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

/// Intents that keep what they are asked for.
class OfferedIntents {
public:
    [[nodiscard]] IntentService::Intents intents() {
        return {.setVolume =
                    [this](std::optional<std::int64_t> volume) {
                        volumes.push_back(volume);
                        return "Volume set to " +
                               (volume ? std::to_string(*volume) : std::string("what holds"));
                    },
                .toggleMute =
                    [this] {
                        ++mutes;
                        return std::string("All audio muted");
                    },
                .listAudioApps = [] { return std::string("Playing: Müsik, ♫"); },
                .shortcuts = shortcuts()};
    }

    [[nodiscard]] static std::vector<IntentShortcut> shortcuts() {
        return {{.method = "SetVolume",
                 .title = "Set Volume",
                 .phrases = {"Set it to {volume}", "Change it"},
                 .shortTitle = "Volume",
                 .symbol = "speaker",
                 .argument = IntentArgument{.name = "volume",
                                            .title = "Volume",
                                            .description = "In percent",
                                            .defaultValue = -9223372036854775807 - 1,
                                            .controlStyle = "stepper"}},
                {.method = "ToggleMute",
                 .title = "Mute",
                 .phrases = {},
                 .shortTitle = "",
                 .symbol = "slash",
                 .argument = std::nullopt}};
    }

    std::vector<std::optional<std::int64_t>> volumes;
    int mutes = 0;
};

} // namespace orvanta::test
