#pragma once

#include "platform/linux/Descriptor.h"

#include <filesystem>
#include <optional>
#include <sys/types.h>

namespace orvanta {

/// The right to take programs' sound and to write the settings of one user's session: one process
/// has it at a time. A lock on a file, which the kernel frees when its owner ends in whatever way;
/// the file stays.
class OwnerLock {
public:
    /// Takes the lock unless somebody has it. Throws std::system_error where there can be no such
    /// file.
    explicit OwnerLock(const std::filesystem::path& file);
    OwnerLock(const OwnerLock&) = delete;
    OwnerLock& operator=(const OwnerLock&) = delete;
    ~OwnerLock() = default;

    [[nodiscard]] bool isOurs() const { return isOurs_; }

    /// The process that has it, as it says itself; nothing where it has not said so yet.
    [[nodiscard]] std::optional<pid_t> owner() const { return owner_; }

private:
    void write(pid_t pid) const;
    [[nodiscard]] std::optional<pid_t> read() const;

    const Descriptor file_;
    bool isOurs_ = false;
    std::optional<pid_t> owner_;
};

/// "orvanta.lock" in the session's folder, `xdgRuntimeDir`, or where that names no absolute folder
/// in `settingsFolder`, so that at least the settings have one writer.
[[nodiscard]] std::filesystem::path ownerLockFile(const char* xdgRuntimeDir,
                                                  const std::filesystem::path& settingsFolder);

} // namespace orvanta
