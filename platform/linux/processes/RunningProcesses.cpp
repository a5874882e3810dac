#include "platform/linux/processes/RunningProcesses.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/ProgramPath.h"
#include "platform/linux/desktop/SmallFile.h"
#include "platform/linux/processes/FlatpakInfo.h"
#include "platform/linux/processes/ProcessStat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <dirent.h>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvanta::desktop {
namespace {

/// The proc file system's files here are far smaller, but for command lines.
constexpr std::size_t kMostOfAFile = 1U << 16U;

/// The parent of the kernel's own threads, which have no executable and play nothing.
constexpr std::int32_t kKernelThreads = 2;

/// Sessions move what they have started into a group of its own sooner.
constexpr std::chrono::seconds kSettling{1};

/// Looks from one reading of a process that does not play to the next.
constexpr std::int32_t kTurns = 8;

class ProcFolder {
public:
    explicit ProcFolder(const std::filesystem::path& root)
        : folder_(opendir(root.c_str()), closedir) {}

    [[nodiscard]] int descriptor() const { return dirfd(folder_.get()); }

    [[nodiscard]] explicit operator bool() const { return folder_ != nullptr; }

    /// Nothing after the last one.
    [[nodiscard]] std::optional<std::int32_t> nextPID() const {
        while (const dirent* const entry = readdir(folder_.get())) {
            const std::string_view name = entry->d_name;
            std::int32_t pid = 0;
            const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
            if (error == std::errc() && end == name.data() + name.size() && pid > 0)
                return pid;
        }
        return std::nullopt;
    }

private:
    std::unique_ptr<DIR, int (*)(DIR*)> folder_;
};

/// Nothing when it has ended.
std::optional<ProcessFolder> folderOfProcess(int procFolder, std::int32_t pid) {
    struct stat status {};

    if (fstatat(procFolder, std::to_string(pid).c_str(), &status, 0) != 0)
        return std::nullopt;
    return ProcessFolder{status.st_ino, status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

std::string fileOf(const Process& process, const char* file) {
    return std::to_string(process.pid) + "/" + file;
}

std::string textOf(int procFolder, const Process& process, const char* file) {
    return readFileStart(procFolder, fileOf(process, file), kMostOfAFile).value_or("");
}

std::string executableOf(int procFolder, const Process& process) {
    std::array<char, PATH_MAX> path{};
    const ssize_t length =
        readlinkat(procFolder, fileOf(process, "exe").c_str(), path.data(), path.size());
    if (length <= 0)
        return {};
    return withoutDeletedMark({path.data(), static_cast<std::size_t>(length)});
}

/// What tells whether it is still the same program in the same process. Nothing when it has ended.
std::optional<Process> identityOf(int procFolder, std::int32_t pid) {
    Process process;
    process.pid = pid;
    const auto line = readFileStart(procFolder, fileOf(process, "stat"), kMostOfAFile);
    if (!line)
        return std::nullopt;
    const ProcessStat stat = parseProcessStat(*line);
    process.parent = stat.parent.value_or(0);
    process.session = stat.session.value_or(0);
    process.startTime = stat.startTime.value_or(0);
    process.name = stat.name;
    process.executable = executableOf(procFolder, process);
    return process;
}

bool isSameProgram(const Process& a, const Process& b) {
    return a.startTime == b.startTime && a.name == b.name && a.executable == b.executable;
}

/// The program's own name first.
std::vector<std::string> commandLineOf(int procFolder, const Process& process) {
    const std::string text = textOf(procFolder, process, "cmdline");
    std::vector<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\0', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

std::string scriptOfProcess(int procFolder, const Process& process) {
    const std::string_view interpreter = fileNameOf(process.executable);
    if (!isInterpreter(interpreter))
        return {};
    const std::vector<std::string> words = commandLineOf(procFolder, process);
    if (words.empty())
        return {};
    // Wine puts the Windows program in the place of its own name.
    const std::string script =
        isWindowsPath(words.front())
            ? words.front()
            : scriptOf(interpreter, std::span(words).subspan(1)).value_or("");
    const std::string located = locatedProgram(script, {});
    return located.empty() ? script : located;
}

/// The last of the ids in the line "NSpid:", which are those from the outside to the inside.
std::int32_t innermostPID(int procFolder, const Process& process) {
    const std::string status = textOf(procFolder, process, "status");
    for (const std::string_view line : listItems(status, '\n')) {
        if (!line.starts_with("NSpid:"))
            continue;
        const std::string_view last = line.substr(line.find_last_of(" \t:") + 1);
        std::int32_t pid = 0;
        std::from_chars(last.data(), last.data() + last.size(), pid);
        return pid;
    }
    return 0;
}

bool isKernelThread(const Process& process) {
    return process.executable.empty() && process.parent == kKernelThreads;
}

void readDetails(int procFolder, Process& process) {
    if (isKernelThread(process))
        return;
    process.script = scriptOfProcess(procFolder, process);
    process.scope = parseProcessScope(textOf(procFolder, process, "cgroup"));
    process.flatpakID = flatpakIDOfProcess(procFolder, process.pid);
    if (process.flatpakID.empty())
        process.flatpakID = process.scope.flatpakID;
    if (!process.flatpakID.empty())
        process.innermostPID = innermostPID(procFolder, process);
}

/// Whether a process is in another control group than when its details were read.
bool hasMoved(int procFolder, const Process& process) {
    if (isKernelThread(process))
        return false;
    const auto text = readFileStart(procFolder, fileOf(process, "cgroup"), kMostOfAFile);
    return text && parseProcessScope(*text) != process.scope;
}

/// All that does not change without a new executable or a move.
void copyDetails(const Process& from, Process& to) {
    to.script = from.script;
    to.scope = from.scope;
    to.flatpakID = from.flatpakID;
    to.innermostPID = from.innermostPID;
    to.firstRead = from.firstRead;
    to.isSettled = from.isSettled;
    to.revision = from.revision;
}

bool hasSameDetails(const Process& a, const Process& b) {
    return a.script == b.script && a.scope == b.scope && a.flatpakID == b.flatpakID &&
           a.innermostPID == b.innermostPID;
}

} // namespace

RunningProcesses::RunningProcesses(std::filesystem::path root) : root_(std::move(root)) {}

void RunningProcesses::refresh(Instant now, const std::set<std::int32_t>& playing) {
    ++looks_;
    std::map<std::int32_t, Process> seen;
    const ProcFolder proc(root_);
    while (const auto pid = proc ? proc.nextPID() : std::nullopt) {
        const auto folder = folderOfProcess(proc.descriptor(), *pid);
        if (!folder)
            continue;
        const auto known = processes_.find(*pid);
        if (known != processes_.end() && !playing.contains(*pid) &&
            !needsReading(known->second, *folder)) {
            seen.insert(seen.end(), processes_.extract(known));
        } else if (auto process = identityOf(proc.descriptor(), *pid)) {
            process->folder = *folder;
            seen.insert_or_assign(*pid, read(proc.descriptor(), *std::move(process), now));
        }
    }
    processes_ = std::move(seen);
}

bool RunningProcesses::needsReading(const Process& known, const ProcessFolder& folder) const {
    return isItsTurn(known.pid) || !known.isSettled || known.folder != folder;
}

bool RunningProcesses::isItsTurn(std::int32_t pid) const {
    return pid % kTurns == looks_ % kTurns;
}

Process RunningProcesses::read(int procFolder, Process process, Instant now) {
    const auto found = processes_.find(process.pid);
    const bool isKnown = found != processes_.end() && isSameProgram(found->second, process);
    const Process* const known = isKnown ? &found->second : nullptr;
    if (isKnown && known->isSettled && !(isItsTurn(process.pid) && hasMoved(procFolder, *known))) {
        copyDetails(*known, process);
        return process;
    }
    readDetails(procFolder, process);
    process.firstRead = isKnown ? known->firstRead : now;
    process.isSettled = now - process.firstRead >= kSettling;
    const bool isUnchanged = isKnown && hasSameDetails(*known, process);
    process.revision = isUnchanged ? known->revision : ++lastRevision_;
    return process;
}

const Process* RunningProcesses::find(std::int32_t pid) const {
    const auto found = processes_.find(pid);
    return found == processes_.end() ? nullptr : &found->second;
}

bool RunningProcesses::exists(std::int32_t pid) const {
    std::error_code error;
    return pid > 0 && std::filesystem::is_directory(root_ / std::to_string(pid), error);
}

const Process* RunningProcesses::findInFlatpak(const std::string& flatpakID,
                                               std::int32_t pid) const {
    const auto found = std::find_if(processes_.begin(), processes_.end(), [&](const auto& entry) {
        return entry.second.flatpakID == flatpakID && entry.second.innermostPID == pid;
    });
    return found == processes_.end() ? nullptr : &found->second;
}

} // namespace orvanta::desktop
