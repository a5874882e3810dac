#include "platform/linux/desktop/FolderState.h"

#include <sys/stat.h>

namespace orvanta::desktop {

FolderState stateOf(const std::filesystem::path& folder) {
    struct stat status {};

    if (stat(folder.c_str(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino,
            std::chrono::seconds(status.st_ctim.tv_sec) +
                std::chrono::nanoseconds(status.st_ctim.tv_nsec)};
}

} // namespace orvanta::desktop
