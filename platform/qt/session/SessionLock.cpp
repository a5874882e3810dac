#include "platform/qt/session/SessionLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvanta {

namespace fs = std::filesystem;

SessionLock::SessionLock(fs::path file) : file_(std::move(file)) {
    std::error_code ignored;
    const fs::path folder = file_.parent_path();
    if (fs::create_directories(folder, ignored))
        fs::permissions(folder, fs::perms::owner_all, ignored);
    descriptor_ = ::open(file_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

SessionLock::~SessionLock() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

SessionLock::State SessionLock::take() const {
    if (descriptor_ < 0)
        return State::impossible;
    while (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return State::taken;
        if (errno != EINTR)
            return State::impossible;
    }
    return State::ours;
}

} // namespace orvanta
