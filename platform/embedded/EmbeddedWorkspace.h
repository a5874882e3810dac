#pragma once

#include "core/platform/Workspace.h"

#include <map>
#include <mutex>
#include <set>

namespace orvanta {

class EmbeddedAudioServer;

namespace embedded {
struct ProgramSettings;
}

/// An icon that is nothing but its key.
class EmbeddedIcon final : public Icon {
public:
    explicit EmbeddedIcon(std::string key) : key_(std::move(key)) {}

    [[nodiscard]] std::string cacheKey() const override { return key_; }

private:
    std::string key_;
};

/// The desktop of an embedded audio server: its programs that are applications, and others that a
/// script adds. Safe from all threads.
///
/// The applications of the running programs count as installed, so their bundle identifiers have
/// places and icons, whose keys are the identifiers where no other icon is set. A running
/// application without an identifier has an icon with the key "pid:<pid>".
class EmbeddedWorkspace final : public Workspace {
public:
    /// `server` must outlive the workspace.
    explicit EmbeddedWorkspace(const EmbeddedAudioServer& server) : server_(server) {}

    /// Runs an application, with sound or without. Stands in place of what the server's programs
    /// say of this pid. Without an icon it gets the one described above.
    void add(RunningApplication application);
    void remove(std::int32_t pid);

    /// An application that need not run.
    void install(const std::string& bundleIdentifier);
    /// Takes place and icon away, also from one that runs.
    void uninstall(const std::string& bundleIdentifier);

    /// The icon of an application, from now on: one that has a picture to show.
    void setIcon(const std::string& bundleIdentifier, IconRef icon);

    /// The server's programs in their order, then what the script has added, by pid.
    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const override;
    /// A path made of the identifier.
    [[nodiscard]] std::optional<std::filesystem::path>
    urlForApplication(const std::string& bundleIdentifier) const override;
    /// Takes what `urlForApplication` gives.
    [[nodiscard]] IconRef iconForFile(const std::filesystem::path& file) const override;

private:
    [[nodiscard]] bool runs(const std::string& bundleIdentifier) const;
    [[nodiscard]] RunningApplication applicationOf(const embedded::ProgramSettings& settings) const;
    /// With the lock held.
    [[nodiscard]] IconRef iconOf(std::int32_t pid,
                                 const std::optional<std::string>& bundleIdentifier) const;

    const EmbeddedAudioServer& server_;
    mutable std::mutex mutex_;
    std::map<std::int32_t, RunningApplication> applications_;
    std::set<std::string> installed_;
    std::set<std::string> uninstalled_;
    std::map<std::string, IconRef> icons_;
};

} // namespace orvanta
