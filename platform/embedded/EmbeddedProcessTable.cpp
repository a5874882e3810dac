#include "platform/embedded/EmbeddedProcessTable.h"

#include "platform/embedded/EmbeddedAudioServer.h"

namespace orvanta {

namespace {

constexpr std::size_t kLongestName = 16;

} // namespace

EmbeddedProcessTable::EmbeddedProcessTable(const EmbeddedAudioServer& server, std::int32_t ownPID)
    : server_(server), ownPID_(ownPID) {}

void EmbeddedProcessTable::setOwnPID(std::int32_t pid) {
    const std::scoped_lock guard(mutex_);
    ownPID_ = pid;
}

void EmbeddedProcessTable::set(std::int32_t pid, Process process) {
    const std::scoped_lock guard(mutex_);
    scripted_[pid] = std::move(process);
}

void EmbeddedProcessTable::unset(std::int32_t pid) {
    const std::scoped_lock guard(mutex_);
    scripted_.erase(pid);
}

std::int32_t EmbeddedProcessTable::ownPID() const {
    const std::scoped_lock guard(mutex_);
    return ownPID_;
}

std::optional<std::string> EmbeddedProcessTable::name(std::int32_t pid) const {
    const auto process = find(pid);
    if (!process || !process->name || process->name->empty())
        return std::nullopt;
    return process->name->substr(0, kLongestName);
}

std::optional<std::string> EmbeddedProcessTable::path(std::int32_t pid) const {
    const auto process = find(pid);
    return process ? process->path : std::nullopt;
}

std::optional<std::int32_t> EmbeddedProcessTable::parent(std::int32_t pid) const {
    const auto process = find(pid);
    return process ? process->parent : std::nullopt;
}

std::optional<ProcessTaskInfo> EmbeddedProcessTable::taskInfo(std::int32_t pid) const {
    const auto process = find(pid);
    return process ? process->taskInfo : std::nullopt;
}

std::optional<EmbeddedProcessTable::Process> EmbeddedProcessTable::find(std::int32_t pid) const {
    {
        const std::scoped_lock guard(mutex_);
        const auto found = scripted_.find(pid);
        if (found != scripted_.end())
            return found->second;
    }
    for (const embedded::ProgramState& program : server_.programs()) {
        const embedded::ProgramSettings& settings = program.settings;
        if (settings.pid == pid)
            return Process{.name = settings.name, .path = settings.path, .parent = settings.parent};
    }
    return std::nullopt;
}

} // namespace orvanta
