#include "platform/linux/defaults/FileOperations.h"

#include "platform/linux/Descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orvanta {
namespace {

constexpr mode_t kFolderOfTheUsersOwn = 0700;
constexpr mode_t kFileOfTheUsersOwn = 0600;

[[noreturn]] void fail(const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), path.native());
}

} // namespace

void SystemFileOperations::makeFolder(const std::filesystem::path& folder) {
    if (folder.empty() || std::filesystem::is_directory(folder))
        return;
    makeFolder(folder.parent_path());
    if (::mkdir(folder.c_str(), kFolderOfTheUsersOwn) != 0 && errno != EEXIST)
        fail(folder);
    sync(folder.parent_path());
}

bool SystemFileOperations::makeFile(const std::filesystem::path& file) {
    const Descriptor made(
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileOfTheUsersOwn));
    if (made.number() < 0 && errno == EEXIST)
        return false;
    if (made.number() < 0 || ::fchmod(made.number(), kFileOfTheUsersOwn) != 0)
        fail(file);
    return true;
}

void SystemFileOperations::makePrivate(const std::filesystem::path& file) {
    if (::chmod(file.c_str(), kFileOfTheUsersOwn) != 0)
        fail(file);
}

bool SystemFileOperations::link(const std::filesystem::path& file,
                                const std::filesystem::path& name) {
    if (::link(file.c_str(), name.c_str()) == 0)
        return true;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS)
        fail(file);
    return false;
}

void SystemFileOperations::remove(const std::filesystem::path& file) {
    if (::unlink(file.c_str()) != 0 && errno != ENOENT)
        fail(file);
}

void SystemFileOperations::rename(const std::filesystem::path& from,
                                  const std::filesystem::path& to) {
    if (::rename(from.c_str(), to.c_str()) != 0)
        fail(from);
}

void SystemFileOperations::sync(const std::filesystem::path& fileOrFolder) {
    const Descriptor opened(::open(fileOrFolder.c_str(), O_RDONLY | O_CLOEXEC));
    if (opened.number() < 0 || ::fsync(opened.number()) != 0)
        fail(fileOrFolder);
}

} // namespace orvanta
