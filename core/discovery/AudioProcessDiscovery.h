#pragma once

#include "core/discovery/AudioApp.h"
#include "core/discovery/NameOrder.h"
#include "core/platform/Platform.h"

#include <vector>

namespace orvanta {

/// Answers which processes have audio. Holds no thread and no listener; may block on the audio
/// system, so never on an IO thread; one thread at a time.
class AudioProcessDiscovery {
public:
    explicit AudioProcessDiscovery(const Platform& platform);

    /// One record per process object, helpers and daemons under their own names, sorted by name.
    /// Empty when the audio system cannot be read.
    [[nodiscard]] std::vector<AudioApp> discoverAllAudioProcesses() const;

private:
    [[nodiscard]] std::vector<AudioApp> rawList() const;
    [[nodiscard]] std::optional<AudioApp> readRawProcess(AudioObjectID object) const;
    [[nodiscard]] bool isProcessRunning(AudioObjectID object) const;
    [[nodiscard]] std::optional<std::string> fallbackProcessName(std::int32_t pid) const;

    AudioHardware& hardware_;
    ProcessTable& processTable_;
    Workspace& workspace_;
    NameOrder nameOrder_;
};

} // namespace orvanta
