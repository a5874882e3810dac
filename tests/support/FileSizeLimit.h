#pragma once

#include <csignal>
#include <cstdint>
#include <sys/resource.h>

namespace orvanta::test {

/// Lets no file of this process grow beyond a size for as long as this object lives: writes at the
/// limit fall short as they do on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::uint64_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limited = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }

private:
    void (*signal_)(int);
    rlimit before_{};
};

} // namespace orvanta::test
