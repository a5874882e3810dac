#pragma once

#include "core/platform/AudioClient.h"
#include "core/platform/Workspace.h"
#include "platform/linux/applications/MembershipFinder.h"
#include "platform/linux/desktop/DesktopEntries.h"
#include "platform/linux/desktop/DesktopFolders.h"
#include "platform/linux/desktop/EntryIndex.h"
#include "platform/linux/icons/IconThemes.h"
#include "platform/linux/processes/RunningProcesses.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <set>

namespace orvanta {

/// The desktop as its entries, its icon theme and the process table describe it. An application's
/// bundle identifier is its entry's id; its place is the entry's file.
///
/// Which application a process belongs to: that of its Flatpak or Snap, of the application id that
/// it gives the audio server, of its control group, of its executable, of its window class; then
/// its ancestor's; then, if it plays, one of its own under the name it gives the server, with no
/// identifier. docs/applications.md has the reasons.
///
/// All of it is looked up at once, at most five times a second: the answers of one pass over the
/// applications fit each other. A question about a process that has come, or has told the server
/// something else, since the last look brings a new one; one that cannot be read does so once. Safe
/// from all threads; asks the audio clients with its own lock held.
class LinuxWorkspace final : public Workspace {
public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    /// `clients` may be null, and must outlive the workspace otherwise.
    explicit LinuxWorkspace(DesktopFolders folders, const AudioClients* clients,
                            std::filesystem::path procRoot = "/proc",
                            Now now = std::chrono::steady_clock::now);

    /// In the order in which the processes started.
    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::filesystem::path>
    urlForApplication(const std::string& bundleIdentifier) const override;
    /// Null for a file that is no entry, and for an entry that names no icon.
    [[nodiscard]] IconRef iconForFile(const std::filesystem::path& file) const override;

private:
    using Instant = std::chrono::steady_clock::time_point;

    void refreshEntries() const;
    void refreshApplications() const;
    void lookAtApplications() const;
    [[nodiscard]] bool hasNewsOf(std::int32_t pid) const;
    [[nodiscard]] IconRef iconNamed(const std::string& icon) const;
    [[nodiscard]] RunningApplication applicationOf(desktop::Membership member) const;

    const DesktopFolders folders_;
    const AudioClients* const audioClients_;
    const Now now_;
    const std::shared_ptr<const desktop::IconThemes> iconThemes_;

    mutable std::mutex mutex_;
    mutable desktop::DesktopEntries entries_;
    mutable desktop::EntryIndex index_;
    mutable std::string themeName_;
    mutable std::optional<Instant> entriesRead_;
    mutable desktop::RunningProcesses processes_;
    mutable desktop::MembershipFinder finder_;
    /// Ids that were asked for, are there and cannot be read: hidden processes, threads. They bring
    /// no look of their own until the next one is due.
    mutable std::set<std::int32_t> unreadable_;
    mutable std::map<std::int32_t, AudioClient> clients_;
    mutable std::vector<RunningApplication> applications_;
    mutable std::map<std::int32_t, std::size_t> placeOfPID_;
    mutable std::optional<Instant> looked_;
};

} // namespace orvanta
