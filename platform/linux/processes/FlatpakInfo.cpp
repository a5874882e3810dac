#include "platform/linux/processes/FlatpakInfo.h"

#include "platform/linux/Descriptor.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/SmallFile.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace orvanta::desktop {
namespace {

constexpr std::size_t kLargestInfo = 1U << 16U;
constexpr std::size_t kLargestMountInfo = 1U << 20U;

constexpr const char* kInfo = ".flatpak-info";
constexpr std::string_view kInfoMount = "/.flatpak-info";

/// "mnt:[4026531841]", or nothing where that is hidden.
std::string mountNamespace(int procFolder, const std::string& process) {
    std::array<char, 64> name{};
    const ssize_t length =
        readlinkat(procFolder, (process + "/ns/mnt").c_str(), name.data(), name.size());
    return {name.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

/// Whether the root is in memory, and so is what is mounted in the info's place.
bool isRootInMemory(std::string_view mountInfo) {
    constexpr std::size_t kMountPoint = 4;
    bool hasRoot = false;
    for (const std::string_view line : listItems(mountInfo, '\n')) {
        const std::vector<std::string_view> fields = listItems(line, ' ');
        // Some optional fields, a dash, then the type.
        const auto dash = std::find(fields.begin(), fields.end(), "-");
        if (fields.size() <= kMountPoint || dash == fields.end() || dash + 1 == fields.end())
            continue;
        const bool isRoot = fields[kMountPoint] == "/";
        if ((isRoot || fields[kMountPoint] == kInfoMount) && *(dash + 1) != "tmpfs")
            return false;
        hasRoot = hasRoot || isRoot;
    }
    return hasRoot;
}

} // namespace

std::string flatpakIDOfProcess(int procFolder, std::int32_t pid) {
    const std::string process = std::to_string(pid);
    const std::string itsNamespace = mountNamespace(procFolder, process);
    if (!itsNamespace.empty() && itsNamespace == mountNamespace(procFolder, "self"))
        return {};
    const auto mounts = readFileStart(procFolder, process + "/mountinfo", kLargestMountInfo);
    if (!mounts || !isRootInMemory(*mounts))
        return {};
    const Descriptor root(
        openat(procFolder, (process + "/root").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (root.number() < 0)
        return {};
    return flatpakIDInInfo(readUnlinkedFile(root.number(), kInfo, kLargestInfo).value_or(""));
}

std::string flatpakIDInInfo(std::string_view text) {
    KeyFileReader lines(text);
    while (const auto line = lines.next())
        if (line->group == "Application" && line->key == "name" && isDisplayText(line->value))
            return std::string(line->value);
    return {};
}

} // namespace orvanta::desktop
