#include "platform/media/NewFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvanta::media {
namespace {

constexpr mode_t kReadAndWriteForWhomTheUserLets = 0666;

std::string lastErrorInWords() {
    return std::generic_category().message(errno);
}

} // namespace

std::unique_ptr<NewFile> NewFile::create(const std::filesystem::path& path,
                                         std::string& outReason) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                  kReadAndWriteForWhomTheUserLets);
    if (descriptor < 0) {
        outReason = lastErrorInWords();
        return nullptr;
    }
    return std::unique_ptr<NewFile>(new NewFile(path, descriptor));
}

NewFile::NewFile(std::filesystem::path path, int descriptor)
    : path_(std::move(path)), descriptor_(descriptor) {}

NewFile::~NewFile() {
    ::close(descriptor_);
}

std::optional<std::string> NewFile::write(std::int64_t offset, ByteView bytes) {
    const std::int64_t end = offset + static_cast<std::int64_t>(bytes.size());
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(descriptor_, bytes.data(), bytes.size(),
                                         end - static_cast<std::int64_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            std::string reason = written < 0 ? lastErrorInWords() : "The file takes no more";
            shrinkTo(size_);
            return reason;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    size_ = std::max(size_, end);
    return std::nullopt;
}

void NewFile::shrinkTo(std::int64_t size) noexcept {
    size_ = size;
    // Should it fail, what comes next is written over the rest nevertheless.
    while (::ftruncate(descriptor_, size) != 0 && errno == EINTR) {
    }
}

void NewFile::remove() const noexcept {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

} // namespace orvanta::media
