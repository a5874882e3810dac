#include "platform/linux/OwnerLock.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <system_error>
#include <unistd.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

class AnOwnerLock : public testing::Test {
protected:
    const TemporaryDirectory directory_;
    const fs::path file_ = directory_.path() / "orvanta.lock";
};

TEST_F(AnOwnerLock, IsOursAndSaysSoInItsFile) {
    const OwnerLock lock(file_);
    EXPECT_TRUE(lock.isOurs());
    EXPECT_EQ(lock.owner(), getpid());
    EXPECT_EQ(fileContent(file_), std::to_string(getpid()) + "\n");
    EXPECT_EQ(fs::status(file_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(AnOwnerLock, HasOneOwnerAtATime) {
    std::optional<OwnerLock> first(std::in_place, file_);
    const OwnerLock second(file_);
    EXPECT_FALSE(second.isOurs());
    EXPECT_EQ(second.owner(), getpid());
    first.reset();
    EXPECT_FALSE(second.isOurs()) << "it is not waited for";
    EXPECT_TRUE(OwnerLock(file_).isOurs());
}

TEST_F(AnOwnerLock, IsFreedByTheKernelWhenItsOwnerIsKilled) {
    // -o: its child does not hold it.
    ChildProcess owner(
        {.command = {"flock", "-o", file_, "sh", "-c", "echo held; exec cat"}, .isTalkedTo = true});
    ASSERT_EQ(owner.readLine(Seconds(20)), "held");
    EXPECT_FALSE(OwnerLock(file_).isOurs());
    owner.kill();
    EXPECT_TRUE(OwnerLock(file_).isOurs());
}

TEST_F(AnOwnerLock, DoesNotTellAnOwnerThatHasNotSaidWhoItIs) {
    ChildProcess owner(
        {.command = {"flock", "-o", file_, "sh", "-c", "echo held; exec cat"}, .isTalkedTo = true});
    ASSERT_EQ(owner.readLine(Seconds(20)), "held");
    EXPECT_EQ(OwnerLock(file_).owner(), std::nullopt);
    std::ofstream(file_) << "nobody";
    EXPECT_EQ(OwnerLock(file_).owner(), std::nullopt);
}

TEST_F(AnOwnerLock, MakesFoldersThatAreMissingForTheUserAlone) {
    const fs::path folder = directory_.path() / "config/orvanta";
    EXPECT_TRUE(OwnerLock(folder / "orvanta.lock").isOurs());
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
}

TEST_F(AnOwnerLock, FollowsNoLinkAndSaysWhyItCannotBe) {
    fs::create_symlink(directory_.path() / "elsewhere", file_);
    EXPECT_THROW(OwnerLock{file_}, std::system_error);
    EXPECT_FALSE(fs::exists(directory_.path() / "elsewhere"));
    EXPECT_THROW(OwnerLock{"/proc/orvanta.lock"}, std::system_error);
}

TEST(OwnerLockFile, StandsInTheSessionsFolderOrElseBesideTheSettings) {
    EXPECT_EQ(ownerLockFile("/run/user/7", "/home/u/.config/orvanta"), "/run/user/7/orvanta.lock");
    for (const char* const none : {static_cast<const char*>(nullptr), "", "run"})
        EXPECT_EQ(ownerLockFile(none, "/home/u/.config/orvanta"),
                  "/home/u/.config/orvanta/orvanta.lock");
}

} // namespace
} // namespace orvanta::test
