#pragma once

#include "platform/media/Bytes.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orvanta::media {

/// A file that did not exist before. What it cannot take in one piece it does not take at all, so
/// a full disk tears nothing and what comes after it has found space stands where it belongs.
/// Failures are told as their reasons, in words.
class NewFile {
public:
    /// Null, and the reason in `outReason`, when there is anything at `path` already, a link that
    /// leads nowhere included, or no file can be made there.
    static std::unique_ptr<NewFile> create(const std::filesystem::path& path,
                                           std::string& outReason);

    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    [[nodiscard]] std::int64_t size() const noexcept { return size_; }

    /// Writes at the end, or nothing.
    std::optional<std::string> append(ByteView bytes) { return write(size_, bytes); }

    /// Writes at `offset`, which is `size()` or less. When it fails the file keeps its size; bytes
    /// that were there before may be overwritten in part.
    std::optional<std::string> write(std::int64_t offset, ByteView bytes);

    /// Takes back what was appended since the file had this size.
    void shrinkTo(std::int64_t size) noexcept;

    /// Takes the file out of its folder again.
    void remove() const noexcept;

private:
    NewFile(std::filesystem::path path, int descriptor);

    const std::filesystem::path path_;
    const int descriptor_;
    std::int64_t size_ = 0;
};

} // namespace orvanta::media
