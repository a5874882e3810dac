#include "platform/linux/LinuxWorkspace.h"
#include "tests/support/ScriptedDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace orvanta::test {
namespace {

/// What is installed on this machine.
class InstalledApplicationsTest : public ::testing::Test {
protected:
    /// What a process of this program would be.
    [[nodiscard]] std::optional<RunningApplication> running(const std::string& executable) {
        proc_.run({.pid = 100, .executable = executable});
        return workspace_.runningApplication(100);
    }

    void expectFound(const std::string& entry, const std::string& executable,
                     const std::string& name) {
        if (!workspace_.urlForApplication(entry) || !std::filesystem::exists(executable))
            GTEST_SKIP() << entry << " is not installed here";
        const auto application = running(executable);
        ASSERT_TRUE(application);
        EXPECT_EQ(application->localizedName, name);
        EXPECT_EQ(application->bundleIdentifier, entry);
        ASSERT_TRUE(application->icon);
        const auto picture = application->icon->imageFile(48);
        ASSERT_TRUE(picture);
        EXPECT_TRUE(std::filesystem::exists(*picture));
        EXPECT_THAT(picture->string(), ::testing::HasSubstr(entry));
    }

private:
    /// All users' folders, and a home that has nothing of its own.
    [[nodiscard]] DesktopFolders ofNobody() const {
        auto folders = DesktopFolders::fromEnvironment();
        std::erase(folders.dataFolders, folders.dataHome / "flatpak/exports/share");
        folders.home = directory_.path() / "home";
        folders.dataHome = folders.home / ".local/share";
        folders.configHome = folders.home / ".config";
        folders.locales = {"C"};
        return folders;
    }

    TemporaryDirectory directory_;
    ScriptedProc proc_{directory_.path() / "proc"};
    LinuxWorkspace workspace_{ofNobody(), nullptr, proc_.root()};
};

TEST_F(InstalledApplicationsTest, HaveTheBrowserAmongThem) {
    expectFound("chromium", "/usr/lib/chromium/chromium", "Chromium Web Browser");
}

TEST_F(InstalledApplicationsTest, HaveThePlayerAmongThem) {
    expectFound("mpv", "/usr/bin/mpv", "mpv Media Player");
}

} // namespace
} // namespace orvanta::test
