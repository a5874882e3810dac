#include "platform/linux/desktop/AutostartEntry.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"
#include "tests/support/FileContent.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <sys/stat.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class AutostartEntryTest : public testing::Test {
protected:
    [[nodiscard]] AutostartEntry entryFor(const std::string& executable) const {
        return {directory_.path(),
                {.identifier = "org.example.mixer", .name = "Mixer", .executable = executable}};
    }

    /// The keys of the entry that was written, unescaped.
    [[nodiscard]] std::map<std::string, std::string> keys() const {
        const std::string text = fileContent(file_);
        std::map<std::string, std::string> found;
        desktop::KeyFileReader reader(text);
        while (const auto line = reader.next())
            found[std::string(line->key)] = desktop::unescaped(line->value);
        return found;
    }

    void write(const std::string& lines) const {
        fs::create_directories(file_.parent_path());
        std::ofstream(file_) << "[Desktop Entry]\n" << lines;
    }

    TemporaryDirectory directory_;
    const fs::path file_ = directory_.path() / "autostart" / "org.example.mixer.desktop";
    AutostartEntry entry_ = entryFor("/opt/mixer/bin/mixer");
};

TEST_F(AutostartEntryTest, IsNotThereAtFirst) {
    EXPECT_FALSE(entry_.isRegistered());
}

TEST_F(AutostartEntryTest, StartsTheProgramOnceItIsRegistered) {
    EXPECT_EQ(entry_.registerItem(), std::nullopt);
    EXPECT_TRUE(entry_.isRegistered());
    const auto entry = keys();
    EXPECT_EQ(entry.at("Type"), "Application");
    EXPECT_EQ(entry.at("Name"), "Mixer");
    EXPECT_EQ(entry.at("Terminal"), "false");
    EXPECT_THAT(desktop::execWords(entry.at("Exec")), ElementsAre("/opt/mixer/bin/mixer"));
}

TEST_F(AutostartEntryTest, IsReadableForEverybodyAndLeavesNothingBeside) {
    EXPECT_EQ(entry_.registerItem(), std::nullopt);

    struct stat status {};

    ASSERT_EQ(stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0444U, 0444U);
    EXPECT_EQ(std::distance(fs::directory_iterator(file_.parent_path()), {}), 1);
}

TEST_F(AutostartEntryTest, NamesAnyPathSoThatASessionFindsIt) {
    for (const std::string path :
         {"/opt/my mixer/mixer", "/opt/a\"b`c$d\\e/mixer", "/opt/ünï/mixer", "/opt/a\\\\b\\n/mixer",
          "/opt/tab\there/mixer"}) {
        AutostartEntry entry = entryFor(path);
        EXPECT_EQ(entry.registerItem(), std::nullopt);
        EXPECT_THAT(desktop::execWords(keys().at("Exec")), ElementsAre(path));
    }
}

TEST_F(AutostartEntryTest, DoublesAPercentSignWhichWouldStandForAFile) {
    AutostartEntry entry = entryFor("/opt/50%f/mixer");
    EXPECT_EQ(entry.registerItem(), std::nullopt);
    EXPECT_EQ(keys().at("Exec"), "\"/opt/50%%f/mixer\"");
}

TEST_F(AutostartEntryTest, MayBeRegisteredAndUnregisteredTwice) {
    EXPECT_EQ(entry_.registerItem(), std::nullopt);
    EXPECT_EQ(entry_.registerItem(), std::nullopt);
    EXPECT_TRUE(entry_.isRegistered());
    EXPECT_EQ(entry_.unregisterItem(), std::nullopt);
    EXPECT_EQ(entry_.unregisterItem(), std::nullopt);
    EXPECT_FALSE(entry_.isRegistered());
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(AutostartEntryTest, CountsAsGoneWhenTheDesktopHasSwitchedItOff) {
    write("Exec=\"/opt/mixer/bin/mixer\"\nHidden=true\n");
    EXPECT_FALSE(entry_.isRegistered());
    write("X-GNOME-Autostart-enabled=false\nExec=\"/opt/mixer/bin/mixer\"\n");
    EXPECT_FALSE(entry_.isRegistered());
    write("Exec=\"/opt/mixer/bin/mixer\"\nHidden=false\nX-GNOME-Autostart-enabled=true\n");
    EXPECT_TRUE(entry_.isRegistered());
    write("Name=nothing to start\n[Other]\nExec=\"/opt/mixer/bin/mixer\"\n");
    EXPECT_FALSE(entry_.isRegistered());
}

TEST_F(AutostartEntryTest, CountsAsGoneWhenTheProgramHasMoved) {
    EXPECT_EQ(entry_.registerItem(), std::nullopt);
    AutostartEntry moved = entryFor("/home/anna/mixer");
    EXPECT_FALSE(moved.isRegistered());
    EXPECT_EQ(moved.registerItem(), std::nullopt);
    EXPECT_TRUE(moved.isRegistered());
    EXPECT_FALSE(entry_.isRegistered());
}

TEST_F(AutostartEntryTest, SaysWhyItCouldNotBeRegistered) {
    std::ofstream(directory_.path() / "autostart") << "in the way";
    const auto error = entry_.registerItem();
    ASSERT_TRUE(error);
    EXPECT_EQ(*error, "Not a directory");
    EXPECT_FALSE(entry_.isRegistered());
    EXPECT_EQ(entry_.unregisterItem(), std::nullopt) << "it is as asked for";
}

TEST_F(AutostartEntryTest, KeepsTheOldEntryWhenTheDiskIsFull) {
    const SmallDisk disk(64 * 1024);
    if (disk.failure())
        GTEST_SKIP() << *disk.failure();
    AutostartEntry before(disk.path(), {.identifier = "m", .name = "M", .executable = "/old"});
    ASSERT_EQ(before.registerItem(), std::nullopt);
    disk.fillUpTo(0);
    AutostartEntry after(disk.path(), {.identifier = "m", .name = "M", .executable = "/new"});
    EXPECT_EQ(after.registerItem(), "No space left on device");
    EXPECT_THAT(fileContent(disk.path() / "autostart/m.desktop"), testing::HasSubstr("\"/old\""));
    EXPECT_TRUE(before.isRegistered());
    EXPECT_FALSE(fs::exists(disk.path() / "autostart/m.desktop.new"));
}

} // namespace
} // namespace orvanta::test
