#pragma once

#include "core/platform/Workspace.h"
#include "platform/embedded/sounds/Sound.h"

#include <optional>
#include <string>

namespace orvanta::embedded {

/// A program that plays. The audio server needs `pid`, `source`, `device`, `playing` and
/// `recording`; the rest is what EmbeddedWorkspace and EmbeddedProcessTable tell of the process.
/// Two programs with one pid are one process with two audio objects.
struct ProgramSettings {
    std::int32_t pid = 0;
    /// Display name of the application and short name of the process.
    std::optional<std::string> name = std::nullopt;
    std::optional<std::string> bundleIdentifier = std::nullopt;
    /// None: the process is no application of the desktop.
    std::optional<ActivationPolicy> policy = ActivationPolicy::regular;
    std::optional<std::int32_t> parent = 1;
    std::optional<std::string> path = std::nullopt;

    /// What it plays; none is silence.
    Sound source = {};
    /// UID of the device it plays on. None, or one that is not there: the default output.
    std::optional<std::string> device = std::nullopt;
    /// Whether it plays from the start.
    bool playing = true;
    /// Counts as running, but not as running output.
    bool recording = false;
};

/// A program as it is now.
struct ProgramState {
    AudioObjectID object = kAudioObjectUnknown;
    ProgramSettings settings;
    bool playing = false;
};

} // namespace orvanta::embedded
