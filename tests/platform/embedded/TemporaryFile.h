#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace orvanta::test {

/// A path of this process's own in the folder for temporary files; what is there goes at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& name)
        : path_(testing::TempDir() + "orvanta-" + std::to_string(getpid()) + "-" + name) {}

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

} // namespace orvanta::test
