#include "platform/media/NewFile.h"

#include "tests/support/FileContent.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <string_view>
#include <sys/stat.h>

namespace orvanta::media {
namespace {

using test::FileSizeLimit;
using test::TemporaryDirectory;

ByteView bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

class NewFileTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string content() const { return test::fileContent(path_); }

    const TemporaryDirectory folder_;
    const std::filesystem::path path_ = folder_.path() / "file";
    std::string reason_;
};

TEST_F(NewFileTest, AppendsAndOverwrites) {
    const auto file = NewFile::create(path_, reason_);
    ASSERT_TRUE(file) << reason_;
    EXPECT_FALSE(file->append(bytesOf("one two")));
    EXPECT_FALSE(file->write(4, bytesOf("six seven")));
    EXPECT_FALSE(file->write(0, bytesOf("ten")));
    EXPECT_EQ(content(), "ten six seven");
    EXPECT_EQ(file->size(), 13);
}

TEST_F(NewFileTest, TakesWholePiecesOnlyWhereSpaceIsShort) {
    const auto file = NewFile::create(path_, reason_);
    ASSERT_TRUE(file) << reason_;
    ASSERT_FALSE(file->append(bytesOf("12345678")));
    {
        const FileSizeLimit limit(10);
        EXPECT_EQ(file->append(bytesOf("abc")), "File too large");
        EXPECT_EQ(content(), "12345678");
        EXPECT_EQ(file->write(6, bytesOf("vwxyz")), "File too large");
        EXPECT_EQ(content().size(), 8U);
        EXPECT_EQ(file->size(), 8);
        EXPECT_FALSE(file->append(bytesOf("de")));
    }
    EXPECT_FALSE(file->append(bytesOf("fgh")));
    EXPECT_EQ(content(), "123456vwdefgh");
}

TEST_F(NewFileTest, GivesBackWhatWasAppended) {
    const auto file = NewFile::create(path_, reason_);
    ASSERT_TRUE(file) << reason_;
    ASSERT_FALSE(file->append(bytesOf("12345678")));
    file->shrinkTo(3);
    EXPECT_EQ(content(), "123");
    EXPECT_FALSE(file->append(bytesOf("4")));
    EXPECT_EQ(content(), "1234");
}

TEST_F(NewFileTest, LeavesAloneWhateverIsThereAlready) {
    std::ofstream(path_) << "precious";
    EXPECT_FALSE(NewFile::create(path_, reason_));
    EXPECT_EQ(reason_, "File exists");
    EXPECT_EQ(content(), "precious");

    const auto link = folder_.path() / "link";
    std::filesystem::create_symlink(path_, link);
    EXPECT_FALSE(NewFile::create(link, reason_));
    EXPECT_EQ(content(), "precious");

    EXPECT_FALSE(NewFile::create(folder_.path(), reason_));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path()));
}

TEST_F(NewFileTest, DoesNotFollowALinkThatLeadsNowhere) {
    const auto target = folder_.path() / "nowhere";
    std::filesystem::create_symlink(target, path_);
    EXPECT_FALSE(NewFile::create(path_, reason_));
    EXPECT_EQ(reason_, "File exists");
    EXPECT_TRUE(std::filesystem::is_symlink(path_));
    EXPECT_FALSE(std::filesystem::exists(target));
}

TEST_F(NewFileTest, LetsTheUserDecideWhoMayReadIt) {
    const mode_t before = umask(0027);
    const auto file = NewFile::create(path_, reason_);
    umask(before);
    ASSERT_TRUE(file) << reason_;
    EXPECT_EQ(std::filesystem::status(path_).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write |
                  std::filesystem::perms::group_read);
}

TEST_F(NewFileTest, GoesOutOfItsFolderWhenItIsNotWanted) {
    const auto file = NewFile::create(path_, reason_);
    ASSERT_TRUE(file) << reason_;
    file->remove();
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_FALSE(file->append(bytesOf("into the void")));
}

} // namespace
} // namespace orvanta::media
