#include "core/services/crash/PrivateFile.h"

#include "tests/core/services/support/OrdinaryUser.h"
#include "tests/core/services/support/ScopedUmask.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;
using crash::PrivateFile;

constexpr fs::perms kUserAlone = fs::perms::owner_read | fs::perms::owner_write;

class PrivateFileTest : public ::testing::Test {
protected:
    const TemporaryDirectory folder_;
    const fs::path file_ = folder_.path() / "file";
};

TEST_F(PrivateFileTest, IsTheUsersAloneWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{0022}, mode_t{0277}, mode_t{0777}}) {
        const ScopedUmask umask(mask);
        const fs::path folder = folder_.path() / std::to_string(mask) / "a" / "b";
        crash::makePrivateFolders(folder);
        for (const fs::path& made :
             {folder, folder.parent_path(), folder.parent_path().parent_path()})
            EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all) << made;
        EXPECT_TRUE(PrivateFile(folder / "file").append("text"));
        EXPECT_EQ(fs::status(folder / "file").permissions(), kUserAlone);
    }
}

TEST_F(PrivateFileTest, CanBeMadeByAnOrdinaryUserWhateverTheUmask) {
    const OrdinaryUser user(folder_.path());
    const ScopedUmask umask(0777);
    crash::makePrivateFolders(folder_.path() / "a/b");
    EXPECT_TRUE(PrivateFile(folder_.path() / "a/b/file").append("text"));
    EXPECT_EQ(crash::contentOfFile(folder_.path() / "a/b/file"), "text");
}

TEST_F(PrivateFileTest, KeepsThePermissionsOfWhatIsThere) {
    std::ofstream(file_) << "text";
    const fs::perms before = kUserAlone | fs::perms::group_read;
    fs::permissions(file_, before);
    fs::permissions(folder_.path(), fs::perms::all);
    crash::makePrivateFolders(folder_.path());
    EXPECT_TRUE(PrivateFile(file_).append(" and more"));
    EXPECT_EQ(fs::status(file_).permissions(), before);
    EXPECT_EQ(fs::status(folder_.path()).permissions(), fs::perms::all);
    EXPECT_EQ(fileContent(file_), "text and more");
}

TEST_F(PrivateFileTest, AppendsAlsoBehindWhatOthersAppended) {
    const PrivateFile file(file_);
    EXPECT_TRUE(file.append("one "));
    EXPECT_TRUE(PrivateFile(file_).append("two "));
    EXPECT_TRUE(file.append("three"));
    EXPECT_EQ(fileContent(file_), "one two three");
}

TEST_F(PrivateFileTest, IsNotInheritedByChildPrograms) {
    const int descriptor = PrivateFile(file_).release();
    ASSERT_GE(descriptor, 0);
    EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
    close(descriptor);
}

TEST_F(PrivateFileTest, TakesNoStandardStreamsNumber) {
    const int input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 100);
    close(STDIN_FILENO);
    const int descriptor = PrivateFile(file_).release();
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_GT(descriptor, STDERR_FILENO);
    EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
    close(descriptor);
}

TEST_F(PrivateFileTest, FailsSilentlyWhereThereCanBeNone) {
    EXPECT_FALSE(PrivateFile(folder_.path()).append("text"));
    EXPECT_FALSE(PrivateFile(folder_.path() / "none/file").append("text"));
    fs::create_symlink("nowhere/at/all", file_);
    EXPECT_FALSE(PrivateFile(file_).append("text"));
    EXPECT_EQ(PrivateFile(file_).release(), -1);
    std::ofstream(folder_.path() / "plain") << "";
    crash::makePrivateFolders(folder_.path() / "plain/folder");
    EXPECT_TRUE(fs::is_regular_file(folder_.path() / "plain"));
}

TEST_F(PrivateFileTest, DoesNotWaitAtAPipe) {
    ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
    EXPECT_FALSE(PrivateFile(file_).append("text"));
    EXPECT_EQ(crash::contentOfFile(file_), std::nullopt);
    const int reader = open(file_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_FALSE(PrivateFile(file_).append("text"));
    close(reader);
}

TEST_F(PrivateFileTest, IsReadWhole) {
    const std::string text(100'000, 'x');
    EXPECT_TRUE(PrivateFile(file_).append(text));
    EXPECT_EQ(crash::contentOfFile(file_), text);
    EXPECT_EQ(crash::contentOfFile(folder_.path()), std::nullopt);
    EXPECT_EQ(crash::contentOfFile(folder_.path() / "none"), std::nullopt);
}

} // namespace
} // namespace orvanta::test
