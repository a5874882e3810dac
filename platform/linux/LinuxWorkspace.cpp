#include "platform/linux/LinuxWorkspace.h"

#include "platform/linux/icons/ThemeIcon.h"

#include <utility>

namespace orvanta {
namespace {

/// Longer than one pass over all applications takes, shorter than the pause between two.
constexpr std::chrono::milliseconds kLookHolds{200};

bool tellsTheSame(const AudioClient& a, const AudioClient& b) {
    return a.name == b.name && a.applicationID == b.applicationID && a.iconName == b.iconName &&
           a.binary == b.binary;
}

} // namespace

LinuxWorkspace::LinuxWorkspace(DesktopFolders folders, const AudioClients* clients,
                               std::filesystem::path procRoot, Now now)
    : folders_(std::move(folders)),
      audioClients_(clients),
      now_(std::move(now)),
      iconThemes_(std::make_shared<desktop::IconThemes>(folders_)),
      entries_(folders_),
      processes_(std::move(procRoot)) {}

std::vector<RunningApplication> LinuxWorkspace::runningApplications() const {
    const std::scoped_lock guard(mutex_);
    refreshApplications();
    return applications_;
}

std::optional<RunningApplication> LinuxWorkspace::runningApplication(std::int32_t pid) const {
    const std::scoped_lock guard(mutex_);
    refreshApplications();
    if (hasNewsOf(pid)) {
        lookAtApplications();
        if (processes_.find(pid) == nullptr)
            unreadable_.insert(pid);
    }
    const auto place = placeOfPID_.find(pid);
    if (place == placeOfPID_.end())
        return std::nullopt;
    return applications_[place->second];
}

std::optional<std::filesystem::path>
LinuxWorkspace::urlForApplication(const std::string& bundleIdentifier) const {
    const std::scoped_lock guard(mutex_);
    refreshEntries();
    const auto entry = entries_.all().find(bundleIdentifier);
    if (entry == entries_.all().end())
        return std::nullopt;
    return entry->second->file;
}

IconRef LinuxWorkspace::iconForFile(const std::filesystem::path& file) const {
    const std::scoped_lock guard(mutex_);
    refreshEntries();
    const desktop::DesktopEntryRef entry = entries_.entryOfFile(file);
    return entry ? iconNamed(entry->icon) : nullptr;
}

void LinuxWorkspace::refreshEntries() const {
    const Instant now = now_();
    if (entriesRead_ && now - *entriesRead_ < kLookHolds)
        return;
    entriesRead_ = now;
    themeName_ = iconThemes_->themeName();
    if (!entries_.refresh())
        return;
    index_ = desktop::EntryIndex(entries_, folders_.executableFolders);
    finder_.forgetEntries();
}

void LinuxWorkspace::refreshApplications() const {
    if (looked_ && now_() - *looked_ < kLookHolds)
        return;
    unreadable_.clear();
    lookAtApplications();
}

void LinuxWorkspace::lookAtApplications() const {
    refreshEntries();
    // The clients first: a process that has one is then among the processes, or has ended.
    const std::vector<AudioClient> clients =
        audioClients_ != nullptr ? audioClients_->audioClients() : std::vector<AudioClient>();
    clients_.clear();
    std::set<std::int32_t> playing;
    for (const AudioClient& client : clients) {
        clients_.emplace(client.pid, client);
        playing.insert(client.pid);
    }
    processes_.refresh(now_(), playing);
    applications_.clear();
    placeOfPID_.clear();
    for (desktop::Membership& member : finder_.find(index_, processes_, clients)) {
        placeOfPID_.emplace(member.pid, applications_.size());
        applications_.push_back(applicationOf(std::move(member)));
    }
    looked_ = now_();
}

/// Whether an answer from the last look would be wrong.
bool LinuxWorkspace::hasNewsOf(std::int32_t pid) const {
    const auto client =
        audioClients_ != nullptr ? audioClients_->audioClient(pid) : std::optional<AudioClient>();
    const auto before = clients_.find(pid);
    if (client)
        return before == clients_.end() || !tellsTheSame(*client, before->second);
    if (before != clients_.end())
        return true;
    return processes_.find(pid) == nullptr && !unreadable_.contains(pid) && processes_.exists(pid);
}

IconRef LinuxWorkspace::iconNamed(const std::string& icon) const {
    if (icon.empty())
        return nullptr;
    return std::make_shared<desktop::ThemeIcon>(icon, themeName_, iconThemes_);
}

RunningApplication LinuxWorkspace::applicationOf(desktop::Membership member) const {
    RunningApplication application;
    application.processIdentifier = member.pid;
    application.localizedName = std::move(member.name);
    if (member.entry)
        application.bundleIdentifier = member.entry->id;
    application.activationPolicy = member.policy;
    application.icon = iconNamed(member.icon);
    return application;
}

} // namespace orvanta
