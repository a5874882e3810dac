#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// What the name of a process's control group says of the application that it was started for.
struct ProcessScope {
    /// Ids that the group's name can mean, the longest first: neither the launcher's name in front
    /// nor the id itself need be free of dashes.
    std::vector<std::string> applicationIDs;
    std::string flatpakID;
    std::string snapName;
    std::string snapApp;

    bool operator==(const ProcessScope&) const = default;
};

/// `text`: the process's file "cgroup". The innermost group that names an application counts.
[[nodiscard]] ProcessScope parseProcessScope(std::string_view text);

} // namespace orvanta::desktop
