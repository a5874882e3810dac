#include "platform/linux/OwnerLock.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot lock " + file.string());
}

/// Folders that are missing are made for the user alone.
int openLockFile(const fs::path& file) {
    std::error_code ignored;
    const fs::path folder = file.parent_path();
    if (fs::create_directories(folder, ignored))
        fs::permissions(folder, fs::perms::owner_all, ignored);
    const int number = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (number < 0)
        fail(file);
    return number;
}

/// False when another process has it.
bool take(int descriptor, const fs::path& file) {
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return false;
        if (errno != EINTR)
            fail(file);
    }
    return true;
}

} // namespace

OwnerLock::OwnerLock(const fs::path& file)
    : file_(openLockFile(file)), isOurs_(take(file_.number(), file)) {
    if (isOurs_)
        write(getpid());
    owner_ = isOurs_ ? getpid() : read();
}

/// The lock holds whether the disk takes the number or not: it is for people to read.
void OwnerLock::write(pid_t pid) const {
    const std::string text = std::to_string(pid) + "\n";
    if (::ftruncate(file_.number(), 0) == 0)
        static_cast<void>(::pwrite(file_.number(), text.data(), text.size(), 0));
}

std::optional<pid_t> OwnerLock::read() const {
    std::array<char, 32> text{};
    const ssize_t length = ::pread(file_.number(), text.data(), text.size(), 0);
    pid_t pid = 0;
    const auto result = std::from_chars(text.data(), text.data() + (length > 0 ? length : 0), pid);
    return result.ec == std::errc() && pid > 0 ? std::optional(pid) : std::nullopt;
}

fs::path ownerLockFile(const char* xdgRuntimeDir, const fs::path& settingsFolder) {
    const fs::path session = xdgRuntimeDir != nullptr ? xdgRuntimeDir : "";
    return (session.is_absolute() ? session : settingsFolder) / "orvanta.lock";
}

} // namespace orvanta
