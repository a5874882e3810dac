#pragma once

#include <sys/stat.h>

namespace orvanta::test {

/// The process's umask for as long as this object lives.
class ScopedUmask {
public:
    explicit ScopedUmask(mode_t mask) : before_(umask(mask)) {}

    ScopedUmask(const ScopedUmask&) = delete;
    ScopedUmask& operator=(const ScopedUmask&) = delete;

    ~ScopedUmask() { umask(before_); }

private:
    const mode_t before_;
};

} // namespace orvanta::test
