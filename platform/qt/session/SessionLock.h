#pragma once

#include <filesystem>

namespace orvanta {

/// A lock on a file, had by one process at a time, which the kernel frees when that ends in
/// whatever way. The file stays.
class SessionLock {
public:
    enum class State {
        ours,
        taken,     ///< Another process has it.
        impossible ///< There can be no such file.
    };

    /// Folders that are missing are made for the user alone.
    explicit SessionLock(std::filesystem::path file);
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;
    ~SessionLock();

    /// Takes the lock unless somebody has it; does not wait.
    [[nodiscard]] State take() const;

private:
    const std::filesystem::path file_;
    int descriptor_ = -1;
};

} // namespace orvanta
