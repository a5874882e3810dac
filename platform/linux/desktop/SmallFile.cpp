#include "platform/linux/desktop/SmallFile.h"

#include "platform/linux/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvanta::desktop {
namespace {

/// What most files here fit into; longer ones take another turn.
constexpr std::size_t kFirstRead = 4096;

bool isRegular(int file) {
    struct stat status {};

    return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

/// Without waiting, or a pipe that nobody writes to would hold us here.
constexpr int kForReading = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

std::optional<std::string> startOf(const Descriptor& descriptor, std::size_t size) {
    if (descriptor.number() < 0 || !isRegular(descriptor.number()))
        return std::nullopt;
    std::string text;
    std::size_t filled = 0;
    while (filled < size) {
        text.resize(std::min(size, std::max(kFirstRead, 2 * filled)));
        const ssize_t count = read(descriptor.number(), text.data() + filled, text.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    text.resize(filled);
    return text;
}

std::optional<std::string> unlessLonger(std::optional<std::string> text, std::size_t maximumSize) {
    if (text && text->size() > maximumSize)
        return std::nullopt;
    return text;
}

} // namespace

std::optional<std::string> readFileStart(int folder, const std::string& file, std::size_t size) {
    return startOf(Descriptor(openat(folder, file.c_str(), kForReading)), size);
}

std::optional<std::string> readFileStart(const std::filesystem::path& file, std::size_t size) {
    return readFileStart(AT_FDCWD, file.string(), size);
}

std::optional<std::string> readSmallFile(const std::filesystem::path& file,
                                         std::size_t maximumSize) {
    return unlessLonger(readFileStart(file, maximumSize + 1), maximumSize);
}

std::optional<std::string> readUnlinkedFile(int folder, const char* name, std::size_t maximumSize) {
    const Descriptor place(openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (place.number() < 0 || !isRegular(place.number()))
        return std::nullopt;
    // The very file that was looked at, whatever has its name by now.
    const std::string path = "/proc/self/fd/" + std::to_string(place.number());
    return unlessLonger(readFileStart(path, maximumSize + 1), maximumSize);
}

} // namespace orvanta::desktop
