#include "tests/e2e/support/ProcessTree.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>

namespace orvanta::test {

namespace {

struct ProcessStatus {
    char state = 'X';
    pid_t parent = 0;
};

std::optional<ProcessStatus> statusOf(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string text;
    std::getline(file, text, '\0');
    // The name before these fields is in brackets and may hold anything, brackets too.
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos)
        return std::nullopt;
    std::istringstream fields(text.substr(nameEnd + 1));
    ProcessStatus status;
    if (!(fields >> status.state >> status.parent))
        return std::nullopt;
    return status;
}

std::map<pid_t, pid_t> parentsOfAll() {
    std::map<pid_t, pid_t> parents;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const pid_t pid = std::atoi(entry.path().filename().c_str());
        const auto status = pid > 0 ? statusOf(pid) : std::nullopt;
        if (status)
            parents[pid] = status->parent;
    }
    return parents;
}

} // namespace

std::vector<pid_t> descendantsOf(pid_t ancestor) {
    const std::map<pid_t, pid_t> parents = parentsOfAll();
    const auto descends = [&](pid_t pid) {
        // A process table read piece by piece might even show a circle.
        for (std::size_t step = 0; step < parents.size(); ++step) {
            const auto found = parents.find(pid);
            if (found == parents.end())
                return false;
            pid = found->second;
            if (pid == ancestor)
                return true;
        }
        return false;
    };
    std::vector<pid_t> found;
    for (const auto& [pid, parent] : parents)
        if (descends(pid))
            found.push_back(pid);
    return found;
}

bool isProcessAlive(pid_t pid) {
    const auto status = statusOf(pid);
    return status && status->state != 'Z' && status->state != 'X';
}

} // namespace orvanta::test
