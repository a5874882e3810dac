#pragma once

#include "app/shell/BundleInfo.h"
#include "core/platform/UserFolders.h"

#include <filesystem>
#include <string>

namespace orvanta {

/// Where newer versions are announced, and the key that they are signed with. Empty: nowhere.
struct UpdateFeed {
    std::string url;
    std::string publicKey;
};

/// Who a program is on the user's desktop, and where it keeps what is its own: two of different
/// identities know nothing of each other.
struct ProgramIdentity {
    /// Of its settings, its messages, its entry among what the session starts, and its intents on
    /// the session bus.
    std::string domain;
    BundleInfo bundle;
    std::filesystem::path settingsFile;
    /// Where its crash reports go.
    std::filesystem::path home;
    UserFolders folders;
    UpdateFeed updateFeed;
    /// What its files in the session's folder begin with.
    std::string instanceName;
    /// Whether it takes programs' sound from the session's server, which one process may.
    bool ownsSession = true;
    /// Whether it may be started with the session.
    bool canLaunchAtLogin = true;

    /// The mixer.
    [[nodiscard]] static ProgramIdentity ofMixer();
    /// The demonstration: all that it keeps is in one folder of its own.
    [[nodiscard]] static ProgramIdentity ofDemo();
};

} // namespace orvanta
