#include "platform/linux/desktop/UserFolders.h"

#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

using namespace std::string_literals;

class UserFoldersTest : public ::testing::Test {
protected:
    UserFoldersTest() {
        desktop_.home = "/home/anna";
        desktop_.configHome = directory_.path();
    }

    void write(const std::string& text) const {
        std::ofstream(directory_.path() / "user-dirs.dirs", std::ios::binary) << text;
    }

    /// What a single line makes of the music folder.
    [[nodiscard]] std::optional<fs::path> musicOf(const std::string& line) const {
        write(line + "\n");
        return userFoldersOf(desktop_).music;
    }

    TemporaryDirectory directory_;
    DesktopFolders desktop_;
};

constexpr auto kConventionalMusic = "/home/anna/Music";

TEST_F(UserFoldersTest, AreTheUsualOnesWithoutAFile) {
    const auto folders = userFoldersOf(desktop_);
    EXPECT_EQ(folders.music, kConventionalMusic);
    EXPECT_EQ(folders.documents, "/home/anna/Documents");
    EXPECT_EQ(folders.downloads, "/home/anna/Downloads");
}

TEST_F(UserFoldersTest, AreWhatTheUserHasChosen) {
    write("# This file is written by a tool\n"
          "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
          "XDG_MUSIC_DIR=\"$HOME/Musik\"\n"
          "XDG_DOCUMENTS_DIR=\"/srv/anna/Dokumente\"\n"
          "XDG_DOWNLOAD_DIR=\"$HOME/Heruntergeladen\"\n");
    const auto folders = userFoldersOf(desktop_);
    EXPECT_EQ(folders.music, "/home/anna/Musik");
    EXPECT_EQ(folders.documents, "/srv/anna/Dokumente");
    EXPECT_EQ(folders.downloads, "/home/anna/Heruntergeladen");
}

TEST_F(UserFoldersTest, AreEachTheUsualOneWhereTheFileDoesNotNameIt) {
    write("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    const auto folders = userFoldersOf(desktop_);
    EXPECT_EQ(folders.music, kConventionalMusic);
    EXPECT_EQ(folders.documents, "/home/anna/Dokumente");
}

TEST_F(UserFoldersTest, MayHaveBlanksEscapesAndLettersOfAllKinds) {
    EXPECT_EQ(musicOf("\t XDG_MUSIC_DIR = \"$HOME/My Music\"  \r"), "/home/anna/My Music");
    EXPECT_EQ(musicOf(R"(XDG_MUSIC_DIR="$HOME/a \"b\" \\ \$c \`d\`")"),
              R"(/home/anna/a "b" \ $c `d`)");
    EXPECT_EQ(musicOf("XDG_MUSIC_DIR=\"$HOME/M\xC3\xBCsik=#1\""), "/home/anna/M\xC3\xBCsik=#1");
    EXPECT_EQ(musicOf("XDG_MUSIC_DIR=\"$HOME/deep/down/\""), "/home/anna/deep/down");
}

TEST_F(UserFoldersTest, AreNoneOfAKindWhoseFolderIsTheHomeFolder) {
    for (const char* value : {"$HOME", "$HOME/", "$HOME//", "$HOME/.", "/home/anna", "/home/anna/",
                              "/home/anna/Music/.."})
        EXPECT_FALSE(musicOf("XDG_MUSIC_DIR=\""s + value + "\"")) << value;
    EXPECT_EQ(userFoldersOf(desktop_).documents, "/home/anna/Documents");
}

TEST_F(UserFoldersTest, AreNotTakenFromLinesThatNameNone) {
    for (const std::string& line : {"XDG_MUSIC_DIR"s,
                                    "XDG_MUSIC_DIR="s,
                                    "XDG_MUSIC_DIR=$HOME/Bare"s,
                                    "XDG_MUSIC_DIR='$HOME/Single'"s,
                                    "XDG_MUSIC_DIR=\""s,
                                    "XDG_MUSIC_DIR=\"\""s,
                                    "XDG_MUSIC_DIR=\"relative\""s,
                                    "XDG_MUSIC_DIR=\"$HOME/open"s,
                                    "XDG_MUSIC_DIR=\"$HOME/open\\\""s,
                                    "XDG_MUSIC_DIR=\"$HOME/open\\"s,
                                    "XDG_MUSIC_DIR=\"$HOME/a\"b\""s,
                                    "XDG_MUSIC_DIR=\"$HOMER/a\""s,
                                    "XDG_MUSIC_DIR=\"\\$HOME/a\""s,
                                    "XDG_MUSIC_DIR=\"$OTHER/a\""s,
                                    "XDG_MUSIC_DIR=\"${HOME}/a\""s,
                                    "#XDG_MUSIC_DIR=\"$HOME/a\""s,
                                    "export XDG_MUSIC_DIR=\"$HOME/a\""s,
                                    "XDG_MUSIC_DIR[de]=\"$HOME/a\""s,
                                    "xdg_music_dir=\"$HOME/a\""s,
                                    "XDG_MUSIC_DIR=\"$HOME/a\0b\""s})
        EXPECT_EQ(musicOf(line), kConventionalMusic) << line;
}

TEST_F(UserFoldersTest, AreWhatTheLastLineSaysThatNamesOne) {
    EXPECT_EQ(musicOf("XDG_MUSIC_DIR=\"$HOME/a\"\nXDG_MUSIC_DIR=\"$HOME/b\""), "/home/anna/b");
    EXPECT_EQ(musicOf("XDG_MUSIC_DIR=\"$HOME/a\"\nXDG_MUSIC_DIR=\"torn"), "/home/anna/a");
}

TEST_F(UserFoldersTest, AreReadFromBetweenDamagedLines) {
    std::string noise;
    for (int byte = 0; byte < 256; ++byte)
        noise += static_cast<char>(byte);
    EXPECT_EQ(musicOf(noise + "\n[broken\nXDG_MUSIC_DIR=\"$HOME/Musik\"\n" + noise),
              "/home/anna/Musik");
}

TEST_F(UserFoldersTest, AreTheUsualOnesWhereverTheFileWasTorn) {
    const std::string whole = "XDG_MUSIC_DIR=\"$HOME/Musik\"";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        write(whole.substr(0, length));
        EXPECT_EQ(userFoldersOf(desktop_).music, kConventionalMusic) << length;
    }
}

TEST_F(UserFoldersTest, AreTheUsualOnesWhereTheFileIsHugeOrNone) {
    const std::string line = "XDG_MUSIC_DIR=\"$HOME/Musik\"\n";
    write(line + std::string(1U << 20U, '#'));
    EXPECT_EQ(userFoldersOf(desktop_).music, kConventionalMusic);
    fs::remove(directory_.path() / "user-dirs.dirs");
    fs::create_directory(directory_.path() / "user-dirs.dirs");
    EXPECT_EQ(userFoldersOf(desktop_).music, kConventionalMusic);
}

TEST_F(UserFoldersTest, AreOnlyThoseNamedInFullWithoutAHomeFolder) {
    for (const char* home : {"", "/"}) {
        desktop_.home = home;
        write("XDG_MUSIC_DIR=\"$HOME/Music\"\n");
        EXPECT_FALSE(userFoldersOf(desktop_).music) << home;
        EXPECT_FALSE(userFoldersOf(desktop_).documents) << home;
        write("XDG_MUSIC_DIR=\"/srv/music\"\n");
        EXPECT_EQ(userFoldersOf(desktop_).music, "/srv/music") << home;
    }
}

TEST_F(UserFoldersTest, AreNotTakenFromTheEnvironment) {
    const ScopedEnvironment environment(
        ScopedEnvironment::Variables{{"XDG_MUSIC_DIR", "/elsewhere"}});
    EXPECT_EQ(userFoldersOf(desktop_).music, kConventionalMusic);
}

TEST_F(UserFoldersTest, HaveTheSystemsTemporaryOne) {
    const ScopedEnvironment environment(
        ScopedEnvironment::Variables{{"TMPDIR", directory_.path().string()}});
    EXPECT_EQ(userFoldersOf(desktop_).temporary, directory_.path());
}

TEST_F(UserFoldersTest, HaveATemporaryOneWhereTheSystemNamesNone) {
    const ScopedEnvironment environment(
        ScopedEnvironment::Variables{{"TMPDIR", (directory_.path() / "none").string()}});
    EXPECT_EQ(userFoldersOf(desktop_).temporary, "/tmp");
}

} // namespace
} // namespace orvanta::test
