#include "platform/linux/LinuxHost.h"

#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace orvanta::test {
namespace {

std::string kernel() {
    utsname names{};
    uname(&names);
    return std::string(names.sysname) + " " + names.release;
}

class LinuxHostTest : public ::testing::Test {
protected:
    std::filesystem::path fileWith(const std::string& text) {
        const auto path = folder_.path() / ("release" + std::to_string(++files_));
        std::ofstream(path) << text;
        return path;
    }

    std::string versionBy(const std::string& text) {
        return operatingSystemVersion({fileWith(text)});
    }

    const TemporaryDirectory folder_;
    int files_ = 0;
};

TEST_F(LinuxHostTest, HomeIsWhatTheEnvironmentSays) {
    const ScopedEnvironment environment(ScopedEnvironment::Variables{{"HOME", "/home/anna"}});
    EXPECT_EQ(userHomeDirectory(), "/home/anna");
}

TEST_F(LinuxHostTest, HomeIsThePasswordDatabasesWhereTheEnvironmentNamesNoFolder) {
    const std::filesystem::path listed = getpwuid(getuid())->pw_dir;
    for (const std::optional<std::string>& useless :
         {std::optional<std::string>(), std::optional<std::string>(""),
          std::optional<std::string>("anna")}) {
        const ScopedEnvironment environment(ScopedEnvironment::Variables{{"HOME", useless}});
        EXPECT_EQ(userHomeDirectory(), listed);
    }
}

TEST_F(LinuxHostTest, OperatingSystemIsNamedByItsMaker) {
    EXPECT_EQ(versionBy("NAME=\"Fedora Linux\"\n"
                        "# PRETTY_NAME=none\n"
                        "PRETTY_NAME=\"Fedora Linux 41 (Workstation Edition)\"\n"
                        "ID=fedora\n"),
              "Fedora Linux 41 (Workstation Edition)");
}

TEST_F(LinuxHostTest, QuotesAndEscapesAreUndoneAsAShellDoes) {
    EXPECT_EQ(versionBy("PRETTY_NAME=Arch"), "Arch");
    EXPECT_EQ(versionBy("PRETTY_NAME='A \"plain\" \\n name'"), "A \"plain\" \\n name");
    EXPECT_EQ(versionBy(R"(PRETTY_NAME="The \"best\" \$5 \`OS\` \\ \n")"),
              R"(The "best" $5 `OS` \ \n)");
    EXPECT_EQ(versionBy(R"(PRETTY_NAME=Two\ words)"), "Two words");
    EXPECT_EQ(versionBy(R"(PRETTY_NAME="A"' 'B)"), "A B");
    EXPECT_EQ(versionBy("PRETTY_NAME=\"Never closed"), "Never closed");
    EXPECT_EQ(versionBy("PRETTY_NAME=ends\\"), "ends\\");
}

TEST_F(LinuxHostTest, LastAssignmentHolds) {
    EXPECT_EQ(versionBy("PRETTY_NAME=First\nPRETTY_NAME=Second\n"), "Second");
}

TEST_F(LinuxHostTest, SecondReleaseFileStandsInForAMissingOne) {
    const auto second = fileWith("PRETTY_NAME=Second");
    EXPECT_EQ(operatingSystemVersion({folder_.path() / "none", second}), "Second");
    EXPECT_EQ(operatingSystemVersion({fileWith("PRETTY_NAME=First"), second}), "First");
}

TEST_F(LinuxHostTest, KernelStandsInForANameThatNobodyTells) {
    EXPECT_EQ(operatingSystemVersion({folder_.path() / "none"}), kernel());
    EXPECT_EQ(operatingSystemVersion({}), kernel());
    EXPECT_EQ(versionBy("ID=nameless\n"), kernel());
    EXPECT_EQ(versionBy("PRETTY_NAME=\"\"\n"), kernel());
    EXPECT_EQ(versionBy("PRETTY_NAME=\"no \xff text\"\n"), kernel());
}

TEST_F(LinuxHostTest, CarriesTheProgramsVersions) {
    const HostInfo host = linuxHost("1.2", std::nullopt);
    EXPECT_EQ(host.shortVersion, "1.2");
    EXPECT_EQ(host.bundleVersion, std::nullopt);
    EXPECT_EQ(host.homeDirectory, userHomeDirectory());
    EXPECT_FALSE(host.operatingSystemVersion.empty());
}

} // namespace
} // namespace orvanta::test
