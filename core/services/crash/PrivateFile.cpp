#include "core/services/crash/PrivateFile.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvanta::crash {
namespace {

constexpr mode_t kUserAloneReadsAndWrites = 0600;
constexpr mode_t kUserAloneEnters = 0700;

/// Without waiting, or a pipe that has no other end would hold us here.
constexpr int kWithoutWaiting = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
constexpr int kForReading = O_RDONLY | kWithoutWaiting;
constexpr int kForAppending = O_WRONLY | O_APPEND | kWithoutWaiting;

int openOrMake(const char* file) noexcept {
    const int made = ::open(file, kForAppending | O_CREAT | O_EXCL, kUserAloneReadsAndWrites);
    if (made >= 0) {
        // The umask may have taken the user's own rights.
        ::fchmod(made, kUserAloneReadsAndWrites);
        return made;
    }
    return errno == EEXIST ? ::open(file, kForAppending) : -1;
}

bool isRegular(int descriptor) noexcept {
    struct stat status {};

    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

int regularOnly(int descriptor) noexcept {
    Descriptor file(descriptor);
    return isRegular(descriptor) ? file.release() : -1;
}

/// What somebody prints shall not land in a file that happened to get the number of a stream.
int beyondStandardStreams(int descriptor) noexcept {
    if (descriptor < 0 || descriptor > STDERR_FILENO)
        return descriptor;
    const Descriptor low(descriptor);
    return ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

} // namespace

void makePrivateFolders(const std::filesystem::path& folder) {
    std::filesystem::path part;
    for (const std::filesystem::path& name : folder) {
        part /= name;
        if (::mkdir(part.c_str(), kUserAloneEnters) == 0)
            ::chmod(part.c_str(), kUserAloneEnters);
    }
}

std::optional<std::string> contentOfFile(const std::filesystem::path& file) {
    const Descriptor descriptor(::open(file.c_str(), kForReading));
    if (!isRegular(descriptor.number()))
        return std::nullopt;
    std::string content;
    char bytes[16384];
    for (;;) {
        const ssize_t count = ::read(descriptor.number(), bytes, sizeof bytes);
        if (count == 0)
            return content;
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        content.append(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
    }
}

PrivateFile::PrivateFile(const std::filesystem::path& file)
    : descriptor_(beyondStandardStreams(regularOnly(openOrMake(file.c_str())))) {}

bool PrivateFile::append(std::string_view text) const noexcept {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor_.number(), text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return descriptor_.number() >= 0;
}

} // namespace orvanta::crash
