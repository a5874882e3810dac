#include "core/services/crash/ActivityLog.h"

#include "tests/support/FileContent.h"
#include "tests/support/ScriptedWallClock.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestSize = 1'048'576;
constexpr fs::perms kLogOfUserAlone = fs::perms::owner_read | fs::perms::owner_write;

class ActivityLogTest : public ::testing::Test {
protected:
    void fill(std::size_t bytes) const {
        std::ofstream(file_, std::ios::binary) << std::string(bytes, '.');
    }

    const TemporaryDirectory folder_;
    const fs::path file_ = folder_.path() / "activity.log";
    const fs::path old_ = folder_.path() / "activity.log.old";
    ScriptedWallClock clock_;
    const crash::ActivityLog log_{file_, clock_};
};

TEST_F(ActivityLogTest, AppendsTheTimeAndTheMessage) {
    log_.write("first\n");
    clock_.time += std::chrono::seconds(4);
    log_.write("of two\nlines\n");
    log_.write("without end");
    log_.write("");
    EXPECT_EQ(fileContent(file_), "[2026-11-21T12:34:56Z] first\n"
                                  "[2026-11-21T12:35:00Z] of two\nlines\n"
                                  "[2026-11-21T12:35:00Z] without end"
                                  "[2026-11-21T12:35:00Z] ");
}

TEST_F(ActivityLogTest, IsTheUsersAlone) {
    log_.write("");
    EXPECT_EQ(fs::status(file_).permissions(), kLogOfUserAlone);
}

TEST_F(ActivityLogTest, KeepsALogOfExactlyTheLargestSize) {
    fill(kLargestSize);
    log_.write("one more\n");
    EXPECT_FALSE(fs::exists(old_));
    EXPECT_EQ(fs::file_size(file_),
              kLargestSize + std::string("[2026-11-21T12:34:56Z] one more\n").size());
}

TEST_F(ActivityLogTest, MovesALogOfOneByteMoreAway) {
    fill(kLargestSize + 1);
    log_.write("afresh\n");
    EXPECT_EQ(fs::file_size(old_), kLargestSize + 1);
    EXPECT_EQ(fileContent(file_), "[2026-11-21T12:34:56Z] afresh\n");
    EXPECT_EQ(fs::status(file_).permissions(), kLogOfUserAlone);
}

TEST_F(ActivityLogTest, MovesItInPlaceOfTheOneBefore) {
    std::ofstream(old_) << "older still";
    fill(kLargestSize + 1);
    log_.write("afresh\n");
    EXPECT_EQ(fs::file_size(old_), kLargestSize + 1);
}

TEST_F(ActivityLogTest, GoesOnWhereTheOldOneCannotBeReplaced) {
    fs::create_directories(old_ / "folder");
    fill(kLargestSize + 1);
    log_.write("afresh\n");
    EXPECT_EQ(fs::file_size(file_),
              kLargestSize + 1 + std::string("[2026-11-21T12:34:56Z] afresh\n").size());
}

TEST_F(ActivityLogTest, SurvivesAFolderInItsPlaceAndAFileAboveIt) {
    fs::create_directory(file_);
    log_.write("nowhere\n");
    EXPECT_TRUE(fs::is_empty(file_));
    std::ofstream(folder_.path() / "file") << "";
    crash::ActivityLog(folder_.path() / "file/activity.log", clock_).write("nowhere\n");
    crash::ActivityLog(folder_.path() / "none/activity.log", clock_).write("nowhere\n");
    EXPECT_FALSE(fs::exists(folder_.path() / "none"));
}

TEST_F(ActivityLogTest, SurvivesAFullDisk) {
    const SmallDisk disk(64U << 10U);
    if (disk.failure())
        GTEST_SKIP() << *disk.failure();
    const crash::ActivityLog log(disk.path() / "activity.log", clock_);
    log.write("fits\n");
    disk.fillUpTo(0);
    const std::string large(8192, 'x');
    log.write(large);
    disk.makeSpace();
    log.write("fits again\n");
    const std::string content = fileContent(disk.path() / "activity.log");
    EXPECT_TRUE(content.starts_with("[2026-11-21T12:34:56Z] fits\n"));
    EXPECT_TRUE(content.ends_with("[2026-11-21T12:34:56Z] fits again\n"));
}

} // namespace
} // namespace orvanta::test
