#include "tests/support/SmallDisk.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sys/mount.h>
#include <vector>

namespace orvanta::test {
namespace {

constexpr const char* kBallast = "ballast";

} // namespace

SmallDisk::SmallDisk(std::size_t bytes) {
    const std::string options = "size=" + std::to_string(bytes);
    if (mount("tmpfs", path().c_str(), "tmpfs", 0, options.c_str()) != 0)
        failure_ = std::string("cannot mount a small disk: ") + std::strerror(errno);
}

SmallDisk::~SmallDisk() {
    if (!failure_)
        umount2(path().c_str(), MNT_DETACH);
}

void SmallDisk::fillUpTo(std::size_t bytes) const {
    const std::uintmax_t free = std::filesystem::space(path()).available;
    if (free <= bytes)
        return;
    const std::vector<char> ballast(free - bytes);
    std::ofstream(path() / kBallast, std::ios::binary | std::ios::app)
        .write(ballast.data(), static_cast<std::streamsize>(ballast.size()));
}

void SmallDisk::makeSpace() const {
    std::filesystem::remove(path() / kBallast);
}

bool SmallDisk::setReadOnly(bool isReadOnly) const {
    const unsigned long flags = MS_REMOUNT | (isReadOnly ? MS_RDONLY : 0);
    return mount("tmpfs", path().c_str(), "tmpfs", flags, nullptr) == 0;
}

} // namespace orvanta::test
