#include "platform/linux/desktop/SmallFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvanta::desktop {
namespace {

/// What most files here fit into; longer ones take another turn.
constexpr std::size_t kFirstRead = 4096;

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (number_ >= 0)
            close(number_);
    }

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

bool isRegular(int file) {
    struct stat status {};

    return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::optional<std::string> readFileStart(int folder, const std::string& file, std::size_t size) {
    // Without waiting, or a pipe that nobody writes to would hold us here.
    const Descriptor descriptor(
        openat(folder, file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
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

std::optional<std::string> readFileStart(const std::filesystem::path& file, std::size_t size) {
    return readFileStart(AT_FDCWD, file.string(), size);
}

std::optional<std::string> readSmallFile(const std::filesystem::path& file,
                                         std::size_t maximumSize) {
    auto text = readFileStart(file, maximumSize + 1);
    if (text && text->size() > maximumSize)
        return std::nullopt;
    return text;
}

} // namespace orvanta::desktop
