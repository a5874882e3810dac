#include "app/update/Download.h"

#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

TEST(DownloadNames, AreTheLastPartOfTheAddress) {
    EXPECT_EQ(downloadName("https://example.org/a/Orvanta-2.0_amd64.deb?x=1#y", "2.0"),
              "Orvanta-2.0_amd64.deb");
}

TEST(DownloadNames, MeanNothingInAFolder) {
    EXPECT_EQ(downloadName("https://example.org/..%2F..%2Fetc%2Fpasswd", "2"), "passwd");
    EXPECT_EQ(downloadName("https://example.org/.bashrc", "2"), "bashrc");
    EXPECT_EQ(downloadName("https://example.org/--help", "2"), "help");
    EXPECT_EQ(downloadName("https://example.org/a%20b%0Ac%00d.deb", "2").find_first_of("/\n "),
              std::string::npos);
}

TEST(DownloadNames, FallBackToTheVersion) {
    for (const char* const url : {"https://example.org/", "https://example.org", "",
                                  "https://example.org/.", "https://example.org/%2E%2E"})
        EXPECT_EQ(downloadName(url, "2.0/1"), "Orvanta-2.0_1") << url;
}

TEST(DownloadNames, KeepTheirEndingWhenTheyAreTooLong) {
    const std::string name =
        downloadName("https://example.org/" + std::string(1000, 'a') + ".deb", "");
    EXPECT_LE(name.size(), 200U);
    EXPECT_TRUE(name.ends_with("a.deb"));
}

class SavedDownloads : public testing::Test {
protected:
    SavedDownload save(const std::string& content) const {
        return saveDownload(folder_, "Orvanta.deb", content);
    }

    [[nodiscard]] std::ptrdiff_t fileCount() const {
        return std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
    }

    const TemporaryDirectory directory_;
    const fs::path folder_ = directory_.path() / "a" / "Downloads";
};

TEST_F(SavedDownloads, StandWholeInTheFolder) {
    const std::string content("a\0b\n", 4);
    const auto saved = save(content);
    EXPECT_EQ(saved.file, folder_ / "Orvanta.deb");
    EXPECT_EQ(saved.failure, "");
    EXPECT_EQ(fileContent(saved.file), content);
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(SavedDownloads, LeaveTheUsersOwnFilesAlone) {
    save("one");
    EXPECT_EQ(save("another").file, folder_ / "Orvanta (2).deb");
    EXPECT_EQ(save("a third").file, folder_ / "Orvanta (3).deb");
    EXPECT_EQ(fileContent(folder_ / "Orvanta.deb"), "one");
}

TEST_F(SavedDownloads, AreNotKeptTwice) {
    save("one");
    save("another");
    EXPECT_EQ(save("one").file, folder_ / "Orvanta.deb");
    EXPECT_EQ(save("another").file, folder_ / "Orvanta (2).deb");
    EXPECT_EQ(fileCount(), 2);
}

TEST_F(SavedDownloads, FollowNoLink) {
    fs::create_directories(folder_);
    fs::create_symlink(directory_.path() / "elsewhere", folder_ / "Orvanta.deb");
    EXPECT_EQ(save("one").file, folder_ / "Orvanta (2).deb");
    EXPECT_FALSE(fs::exists(directory_.path() / "elsewhere"));
}

TEST_F(SavedDownloads, SayWhyTheyAreNot) {
    const auto saved = saveDownload("/proc/downloads", "Orvanta.deb", "one");
    EXPECT_TRUE(saved.file.empty());
    EXPECT_NE(saved.failure, "");
}

} // namespace
} // namespace orvanta::test
