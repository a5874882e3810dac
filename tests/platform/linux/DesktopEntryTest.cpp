#include "platform/linux/desktop/DesktopEntry.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"
#include "platform/linux/desktop/LocaleNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvanta::test {
namespace {

using desktop::DesktopEntry;
using desktop::execWords;
using desktop::localeKeys;
using desktop::programOfCommand;
using desktop::scriptOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::optional<DesktopEntry> parsed(const std::string& text,
                                   const std::vector<std::string>& locales = {}) {
    return desktop::parseDesktopEntry(text, "player", "/a/player.desktop", localeKeys(locales));
}

std::optional<DesktopEntry> withLines(const std::string& lines,
                                      const std::vector<std::string>& locales = {}) {
    return parsed("[Desktop Entry]\nType=Application\n" + lines, locales);
}

TEST(DesktopEntry, TellsWhatTheFileSays) {
    const auto entry = withLines("Name=Player\nIcon=player\nExec=/usr/bin/player --gui %U\n"
                                 "TryExec=player\nStartupWMClass=Player\nX-Flatpak=org.a.Player\n"
                                 "X-SnapInstanceName=player\nCategories=Audio;Player;\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, "player");
    EXPECT_EQ(entry->file, "/a/player.desktop");
    EXPECT_EQ(entry->name, "Player");
    EXPECT_EQ(entry->icon, "player");
    EXPECT_THAT(entry->programs, ElementsAre("/usr/bin/player", "player"));
    EXPECT_EQ(entry->command.size(), 2U);
    EXPECT_EQ(entry->windowClass, "Player");
    EXPECT_EQ(entry->flatpakID, "org.a.Player");
    EXPECT_EQ(entry->snapName, "player");
    EXPECT_TRUE(entry->isShown);
    EXPECT_FALSE(entry->isHidden);
    EXPECT_FALSE(entry->startsOthers);
}

TEST(DesktopEntry, ReadsItsOwnGroupOnly) {
    const auto entry = parsed("Name=Nobody\n[Other]\nName=Other\n[Desktop Entry]\n"
                              "Type=Application\nName=Player\n[Desktop Action New]\nName=New\n"
                              "[Desktop Entry]\nName=Late\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "Player");
}

TEST(DesktopEntry, SpeaksTheUsersLanguage) {
    const std::string names = "Name=Player\nName[de]=Spieler\nName[de_AT]=Abspieler\n"
                              "Name[sr@latin]=Plejer\nName[fr]=Lecteur\n";
    const auto nameFor = [&](const std::vector<std::string>& locales) {
        return withLines(names, locales)->name;
    };
    EXPECT_EQ(nameFor({"de_AT.UTF-8"}), "Abspieler");
    EXPECT_EQ(nameFor({"de_DE.UTF-8@euro"}), "Spieler");
    EXPECT_EQ(nameFor({"sr_RS@latin"}), "Plejer");
    EXPECT_EQ(nameFor({"sr_RS"}), "Player");
    EXPECT_EQ(nameFor({"C"}), "Player");
    EXPECT_EQ(nameFor({"it_IT", "fr", "de"}), "Lecteur");
    EXPECT_EQ(nameFor({}), "Player");
}

TEST(DesktopEntry, PrefersTheBestLanguageWhateverTheOrderOfLines) {
    EXPECT_EQ(withLines("Name[de_AT]=Best\nName[de]=Good\nName=Plain\n", {"de_AT"})->name, "Best");
    EXPECT_EQ(withLines("Name[fr]=Mauvais\nName[de]=Gut\n", {"de_AT"})->name, "Gut");
    EXPECT_FALSE(withLines("Name[fr]=Mauvais\n", {"de_AT"}));
}

TEST(DesktopEntry, PassesOverTextsThatCannotBeShown) {
    EXPECT_EQ(withLines("Name=Player\nName[de]=\n", {"de"})->name, "Player");
    EXPECT_EQ(withLines("Name=Player\nName[de]=\xC3\n", {"de"})->name, "Player");
    EXPECT_EQ(withLines("Name=Player\nName[de]=Zwei\\nZeilen\n", {"de"})->name, "Player");
    EXPECT_EQ(withLines("Name=Player\nName[de]=" + std::string(257, 'x') + "\n", {"de"})->name,
              "Player");
}

TEST(DesktopEntry, IsNoneWithoutAName) {
    EXPECT_FALSE(withLines("Exec=player\n"));
    EXPECT_FALSE(withLines("Name=\n"));
    EXPECT_FALSE(withLines("Name=\xFF\xFE\n"));
}

TEST(DesktopEntry, IsNoneUnlessItIsAnApplication) {
    EXPECT_FALSE(parsed("[Desktop Entry]\nType=Link\nName=Page\n"));
    EXPECT_FALSE(parsed("[Desktop Entry]\nName=Page\n"));
    EXPECT_FALSE(parsed(""));
    EXPECT_FALSE(parsed("Type=Application\nName=Player\n"));
}

TEST(DesktopEntry, MayHideAnApplicationWithoutNamingIt) {
    const auto entry = withLines("Hidden=true\n");
    ASSERT_TRUE(entry);
    EXPECT_TRUE(entry->isHidden);
}

TEST(DesktopEntry, KnowsWhatStandsInNoMenu) {
    EXPECT_FALSE(withLines("Name=Part\nNoDisplay=true\n")->isShown);
    EXPECT_TRUE(withLines("Name=Part\nNoDisplay=false\n")->isShown);
    EXPECT_TRUE(withLines("Name=Part\nOnlyShowIn=GNOME;\n")->isShown);
}

TEST(DesktopEntry, KnowsWhoStartsOthers) {
    EXPECT_TRUE(withLines("Name=T\nCategories=System;TerminalEmulator;\n")->startsOthers);
    EXPECT_TRUE(withLines("Name=F\nCategories=FileManager\n")->startsOthers);
    EXPECT_TRUE(withLines("Name=V\nTerminal=true\nCategories=Editor;\n")->startsOthers);
    EXPECT_FALSE(withLines("Name=V\nTerminal=false\n")->startsOthers);
}

TEST(DesktopEntry, ResolvesEscapes) {
    EXPECT_EQ(withLines("Name=\\sTwo\\\\Words\\x\n")->name, " Two\\Words\\x");
    EXPECT_THAT(withLines("Name=P\nExec=\"/opt/the\\\\\\\\ player/a\"\n")->programs,
                ElementsAre("/opt/the\\ player/a"));
}

TEST(DesktopEntry, BearsCarriageReturnsMarksAndBlanks) {
    const auto entry = parsed("\xEF\xBB\xBF# comment\r\n[Desktop Entry]\r\n Type = Application \r\n"
                              "Name\t=\tPlayer\r\nnonsense\r\n=empty\r\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "Player");
}

TEST(DesktopEntry, NeverFailsOnArbitraryBytes) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string letters = "[]=\n\\%\" ;#Name\xC3\xA9\xFF\x01" + std::string(1, '\0');
    int shown = 0;
    for (int round = 0; round < 5000; ++round) {
        std::string text = "[Desktop Entry]\nType=Application\nName=Player\nExec=";
        for (auto length = random() % 300; length > 0; --length)
            text += letters[random() % letters.size()];
        const auto entry = parsed(text, {"de"});
        if (entry)
            ++shown;
        EXPECT_TRUE(!entry || entry->isHidden || desktop::isDisplayText(entry->name));
    }
    EXPECT_GT(shown, 0);
}

TEST(LocaleKeys, GoFromTheSpecialToTheGeneral) {
    EXPECT_THAT(localeKeys({"de_AT.UTF-8@euro"}),
                ElementsAre("de_AT@euro", "de_AT", "de@euro", "de"));
    EXPECT_THAT(localeKeys({"de_AT", "de", "fr_FR"}), ElementsAre("de_AT", "de", "fr_FR", "fr"));
    EXPECT_THAT(localeKeys({"C", "POSIX", "C.UTF-8", ""}), IsEmpty());
}

TEST(ExecWords, AreSplitAtBlanksOutsideQuotes) {
    EXPECT_THAT(execWords("player  --now\tfile"), ElementsAre("player", "--now", "file"));
    EXPECT_THAT(execWords("\"/opt/my player/run\" \"a \\\"b\\\" \\$c\" \"\""),
                ElementsAre("/opt/my player/run", "a \"b\" $c", ""));
    EXPECT_THAT(execWords("player \"unfinished words"), ElementsAre("player", "unfinished words"));
    EXPECT_THAT(execWords("wine C:\\\\Program\\ Files\\\\radio.exe \\"),
                ElementsAre("wine", "C:\\Program Files\\radio.exe", "\\"));
    EXPECT_THAT(execWords("  "), IsEmpty());
}

TEST(ExecWords, HaveNoCodes) {
    EXPECT_THAT(execWords("player %U --icon %i --url=%u 100%% %"),
                ElementsAre("player", "--icon", "--url=", "100%", "%"));
}

TEST(ProgramOfCommand, IsTheFirstWord) {
    EXPECT_EQ(programOfCommand({"/usr/bin/player", "--x"}), "/usr/bin/player");
    EXPECT_EQ(programOfCommand({}), std::nullopt);
}

TEST(ProgramOfCommand, StandsBehindWrappers) {
    EXPECT_EQ(programOfCommand({"env", "LANG=C", "GDK=x11", "player"}), "player");
    EXPECT_EQ(programOfCommand({"/usr/bin/nice", "-n", "10", "nohup", "player"}), "player");
    EXPECT_EQ(programOfCommand({"sh", "-c", "exec player --all \"$@\""}), "player");
    EXPECT_EQ(programOfCommand({"env", "A=b"}), std::nullopt);
}

TEST(ProgramOfCommand, IsTheScriptOfAnInterpreter) {
    EXPECT_EQ(programOfCommand({"python3", "-u", "/usr/share/p/p.py", "-x"}), "/usr/share/p/p.py");
    EXPECT_EQ(programOfCommand({"java", "-cp", "a:b", "-jar", "/opt/p.jar"}), "/opt/p.jar");
    EXPECT_EQ(programOfCommand({"python3"}), "python3");
}

TEST(ProgramOfCommand, IsHiddenByASandbox) {
    EXPECT_EQ(programOfCommand({"/usr/bin/flatpak", "run", "--command=p", "org.a.P"}),
              std::nullopt);
    EXPECT_EQ(programOfCommand({"env", "A=b", "snap", "run", "p"}), std::nullopt);
}

std::optional<std::string> scriptIn(std::string_view interpreter,
                                    const std::vector<std::string>& arguments) {
    return scriptOf(interpreter, arguments);
}

TEST(ScriptOf, TakesWhatAnOptionNames) {
    EXPECT_EQ(scriptIn("python3.11", {"-W", "ignore", "-m", "player", "file"}), "player");
    EXPECT_EQ(scriptIn("java", {"-cp", "a:b", "-jar", "p.jar"}), "p.jar");
    EXPECT_EQ(scriptIn("php8.2", {"-d", "x=1", "-f", "p.php"}), "p.php");
}

TEST(ScriptOf, IsNoneForCodeOnTheCommandLine) {
    EXPECT_EQ(scriptIn("python3", {"-c", "print()", "file"}), std::nullopt);
    EXPECT_EQ(scriptIn("bash", {"-lc", "player", "file"}), std::nullopt);
    EXPECT_EQ(scriptIn("perl", {"-e", "print", "file"}), std::nullopt);
    EXPECT_EQ(scriptIn("php", {"-r", "print();", "file"}), std::nullopt);
    EXPECT_EQ(scriptIn("node", {"--eval", "0", "file"}), std::nullopt);
}

TEST(ScriptOf, KnowsThatInterpretersMeanDifferentThingsByOneOption) {
    EXPECT_EQ(scriptIn("sh", {"-e", "start.sh"}), "start.sh");
    EXPECT_EQ(scriptIn("bash", {"-o", "errexit", "start.sh"}), "start.sh");
    EXPECT_EQ(scriptIn("python3", {"-I", "player.py"}), "player.py");
    EXPECT_EQ(scriptIn("perl", {"-I", "lib", "-W", "player.pl"}), "player.pl");
    EXPECT_EQ(scriptIn("node", {"-r", "setup", "player.js"}), "player.js");
    EXPECT_EQ(scriptIn("ruby", {"-c", "player.rb"}), "player.rb");
    EXPECT_EQ(scriptIn("java", {"--add-opens", "java.base/java.lang=ALL-UNNAMED", "player.Main"}),
              "player.Main");
}

TEST(Interpreters, AreKnownWithTheirVersions) {
    for (const char* name : {"python3.11", "sh", "node18", "java", "electron28", "perl", "wine",
                             "wine64", "wine64-preloader", "love-11.5", "proton", "dosbox"})
        EXPECT_TRUE(desktop::isInterpreter(name)) << name;
    for (const char* name : {"player", "shotwell", "3", "", "nodeeditor", "winecfg"})
        EXPECT_FALSE(desktop::isInterpreter(name)) << name;
}

} // namespace
} // namespace orvanta::test
