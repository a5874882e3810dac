#pragma once

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace orvanta::test {

/// A number in a page that two programs share. It outlives whoever wrote it last.
class SharedCounter {
public:
    /// Makes the file if there is none.
    explicit SharedCounter(const std::filesystem::path& path) {
        const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        void* page = MAP_FAILED;
        if (descriptor >= 0 && ftruncate(descriptor, sizeof(std::uint64_t)) == 0)
            page = mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED,
                        descriptor, 0);
        const int error = errno;
        close(descriptor);
        if (page == MAP_FAILED)
            throw std::system_error(error, std::generic_category(), path);
        value_ = static_cast<std::uint64_t*>(page);
    }

    SharedCounter(const SharedCounter&) = delete;
    SharedCounter& operator=(const SharedCounter&) = delete;

    ~SharedCounter() { munmap(value_, sizeof *value_); }

    void set(std::uint64_t value) { std::atomic_ref(*value_).store(value); }

    [[nodiscard]] std::uint64_t get() const { return std::atomic_ref(*value_).load(); }

private:
    std::uint64_t* value_ = nullptr;
};

} // namespace orvanta::test
