#pragma once

#include "tests/support/TemporaryDirectory.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace orvanta::test {

/// A file system of a few KiB in memory, for as long as this object lives. Mounting needs a right
/// that not everybody has.
class SmallDisk {
public:
    explicit SmallDisk(std::size_t bytes);
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk();

    /// Why there is none, if so.
    [[nodiscard]] const std::optional<std::string>& failure() const { return failure_; }

    [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }

    /// Takes all space but `bytes`, rounded to whole pages.
    void fillUpTo(std::size_t bytes) const;
    /// Gives the space back.
    void makeSpace() const;

    /// From now on nothing on it can be changed, or everything again. False where somebody still
    /// writes.
    [[nodiscard]] bool setReadOnly(bool isReadOnly) const;

private:
    const TemporaryDirectory folder_;
    std::optional<std::string> failure_;
};

} // namespace orvanta::test
