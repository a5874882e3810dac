#pragma once

#include <filesystem>

namespace orvanta::test {

/// A directory of this process alone, gone with the object. What killed test programs left behind
/// is removed the next time one is made.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace orvanta::test
