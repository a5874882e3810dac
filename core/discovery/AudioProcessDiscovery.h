#pragma once

#include "core/discovery/AudioDiscovering.h"
#include "core/discovery/NameOrder.h"
#include "core/discovery/ParentAppResolver.h"
#include "core/platform/Platform.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// Answers which applications make sound. Drops the system's own noise, counts helper processes to
/// the application that owns them, and makes one of an application's several processes. Holds no
/// thread and no listener, keeps nothing from one pass to the next but icons; may block on the
/// audio system, so never on an IO thread; one thread at a time.
class AudioProcessDiscovery final : public AudioDiscovering {
public:
    explicit AudioProcessDiscovery(const Platform& platform);

    /// An application is told by its name, so that two of its helpers meet even if neither has a
    /// bundle identifier; two applications of one name are therefore one. Its process is the first
    /// that plays, in the system's order, or else its first.
    [[nodiscard]] std::vector<AudioApp> discoverAudioApps() override;

    /// One record per process object, helpers and daemons under their own names, sorted by name.
    /// Empty when the audio system cannot be read.
    [[nodiscard]] std::vector<AudioApp> discoverAllAudioProcesses() const;

private:
    /// A process and the application it is counted to.
    struct CountedProcess {
        AudioApp process;
        ResolvedIdentity resolved;
    };

    /// What is known of an application while its processes are merged.
    struct MergedAppEntry {
        std::optional<std::string> bundleIdentifier;
        AudioObjectID audioObjectID = kAudioObjectUnknown;
        std::int32_t pid = 0;
        bool isPlaying = false;
    };

    using MergedApps = std::map<std::string, MergedAppEntry>;

    [[nodiscard]] std::vector<CountedProcess> countedProcesses();
    [[nodiscard]] std::optional<ResolvedIdentity>
    identityOf(const AudioApp& process, const std::vector<RunningApplication>& apps);
    static MergedApps merged(const std::vector<CountedProcess>& processes);
    [[nodiscard]] std::vector<AudioApp> rawList() const;
    [[nodiscard]] std::optional<AudioApp> readRawProcess(AudioObjectID object) const;
    [[nodiscard]] bool isProcessRunning(AudioObjectID object) const;
    [[nodiscard]] std::optional<std::string> fallbackProcessName(std::int32_t pid) const;

    AudioHardware& hardware_;
    ProcessTable& processTable_;
    Workspace& workspace_;
    NameOrder nameOrder_;
    ParentAppResolver parentApps_;
};

} // namespace orvanta
