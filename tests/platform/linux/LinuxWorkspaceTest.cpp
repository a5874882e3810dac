#include "platform/linux/LinuxWorkspace.h"

#include "tests/support/ScriptedDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using ::testing::ElementsAre;

/// Nobody plays; every look asks once who does.
class LookCounter final : public AudioClients {
public:
    [[nodiscard]] int looks() const { return looks_; }

    [[nodiscard]] std::vector<AudioClient> audioClients() const override {
        ++looks_;
        return {};
    }

    [[nodiscard]] std::optional<AudioClient> audioClient(std::int32_t /*pid*/) const override {
        return std::nullopt;
    }

private:
    mutable int looks_ = 0;
};

class LinuxWorkspaceTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string idOf(std::int32_t pid) {
        desktop_.nextPass();
        const auto application = desktop_.workspace.runningApplication(pid);
        return application ? application->bundleIdentifier.value_or("(no id)") : "(none)";
    }

    [[nodiscard]] std::string nameOf(std::int32_t pid) {
        desktop_.nextPass();
        const auto application = desktop_.workspace.runningApplication(pid);
        return application ? application->localizedName.value_or("(no name)") : "(none)";
    }

    [[nodiscard]] std::vector<std::int32_t> listedPIDs() {
        desktop_.nextPass();
        std::vector<std::int32_t> pids;
        for (const auto& application : desktop_.workspace.runningApplications())
            pids.push_back(application.processIdentifier);
        return pids;
    }

    ScriptedDesktop desktop_;
    ScriptedProc& proc_ = desktop_.proc;
};

TEST_F(LinuxWorkspaceTest, TellsNameIdentifierIconAndPolicyOfTheEntry) {
    desktop_.install("org.example.Player", "Player", "/usr/bin/player %U",
                     "Name[de]=Abspieler\nIcon=player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    const auto application = desktop_.workspace.runningApplication(100);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->processIdentifier, 100);
    EXPECT_EQ(application->localizedName, "Abspieler");
    EXPECT_EQ(application->bundleIdentifier, "org.example.Player");
    EXPECT_EQ(application->activationPolicy, ActivationPolicy::regular);
    ASSERT_TRUE(application->icon);
    EXPECT_EQ(application->icon->cacheKey(),
              desktop_.workspace.iconForFile(desktop_.entryFile("org.example.Player"))->cacheKey());
}

TEST_F(LinuxWorkspaceTest, TellsWhereAnApplicationIsInstalled) {
    desktop_.install("player", "Player", "player", "Icon=player");
    desktop_.install("plain", "Plain", "plain");
    EXPECT_EQ(desktop_.workspace.urlForApplication("player"), desktop_.entryFile("player"));
    EXPECT_FALSE(desktop_.workspace.urlForApplication("Player"));
    EXPECT_FALSE(desktop_.workspace.iconForFile("/nowhere.desktop"));
    EXPECT_FALSE(desktop_.workspace.iconForFile(desktop_.entryFile("plain")));
    const auto picture = desktop_.folders.dataFolders[0] / "icons/hicolor/48x48/apps/player.png";
    ScriptedProc::write(picture, "picture");
    EXPECT_EQ(desktop_.workspace.iconForFile(desktop_.entryFile("player"))->imageFile(48), picture);
}

TEST_F(LinuxWorkspaceTest, KnowsNothingOfProcessesThatAreNoApplication) {
    proc_.run({.pid = 100, .executable = "/usr/sbin/daemon"});
    EXPECT_EQ(idOf(100), "(none)");
    EXPECT_EQ(idOf(101), "(none)");
    EXPECT_EQ(idOf(-1), "(none)");
    EXPECT_TRUE(listedPIDs().empty());
}

// Which of the signs counts.

TEST_F(LinuxWorkspaceTest, BelievesAFlatpakBeforeAllElse) {
    desktop_.install("org.example.Player", "Player", "flatpak run org.example.Player");
    desktop_.install("other", "Other", "/app/bin/player");
    proc_.run({.pid = 100,
               .executable = "/app/bin/player",
               .unit = "app-other-1.scope",
               .flatpakID = "org.example.Player"});
    desktop_.clients.play({.pid = 100, .applicationID = "other"});
    EXPECT_EQ(idOf(100), "org.example.Player");
}

TEST_F(LinuxWorkspaceTest, FindsAFlatpaksEntryOfAnotherName) {
    desktop_.install("radio", "Radio", "flatpak run org.example.Radio",
                     "X-Flatpak=org.example.Radio");
    proc_.run({.pid = 100, .executable = "/app/bin/x", .flatpakID = "org.example.Radio"});
    EXPECT_EQ(idOf(100), "radio");
}

TEST_F(LinuxWorkspaceTest, KnowsAFlatpakByItsControlGroupWhereItsInfoCannotBeRead) {
    desktop_.install("org.example.Radio", "Radio", "flatpak run org.example.Radio");
    proc_.run(
        {.pid = 100, .executable = "/app/x", .unit = "app-flatpak-org.example.Radio-7.scope"});
    EXPECT_EQ(idOf(100), "org.example.Radio");
}

TEST_F(LinuxWorkspaceTest, BelievesASnapBeforeTheAudioClient) {
    desktop_.install("player_gui", "Player", "/snap/bin/player.gui");
    desktop_.install("other", "Other", "other");
    proc_.run(
        {.pid = 100, .executable = "/snap/player/1/bin/x", .unit = "snap.player.gui.a.scope"});
    desktop_.clients.play({.pid = 100, .applicationID = "other"});
    EXPECT_EQ(idOf(100), "player_gui");
}

TEST_F(LinuxWorkspaceTest, FindsASnapsEntryByTheSnapAlone) {
    desktop_.install("player_main", "Player", "/snap/bin/player", "X-SnapInstanceName=player");
    proc_.run({.pid = 100, .executable = "/snap/x", .unit = "snap.player.helper-1a2b.scope"});
    EXPECT_EQ(idOf(100), "player_main");
}

TEST_F(LinuxWorkspaceTest, BelievesTheAudioClientBeforeTheControlGroup) {
    desktop_.install("org.example.Player", "Player", "player");
    desktop_.install("other", "Other", "/usr/bin/x");
    proc_.run({.pid = 100, .executable = "/usr/bin/x", .unit = "app-other-1.scope"});
    EXPECT_EQ(idOf(100), "other");
    for (const char* id :
         {"org.example.Player", "org.example.player", "org.example.Player.desktop"}) {
        desktop_.clients.play({.pid = 100, .applicationID = id});
        EXPECT_EQ(idOf(100), "org.example.Player") << id;
    }
    desktop_.clients.play({.pid = 100, .applicationID = "org.unknown.App"});
    EXPECT_EQ(idOf(100), "other");
}

TEST_F(LinuxWorkspaceTest, KnowsAnEntryByTheLastPartOfTheClientsID) {
    desktop_.install("player", "Player", "unrelated");
    proc_.run({.pid = 100, .executable = "/usr/bin/x"});
    desktop_.clients.play({.pid = 100, .applicationID = "org.example.Player"});
    EXPECT_EQ(idOf(100), "player");
}

TEST_F(LinuxWorkspaceTest, CountsAllProcessesOfAControlGroup) {
    desktop_.install("player", "Player", "player");
    proc_.run(
        {.pid = 100, .executable = "/usr/libexec/helper", .unit = "app-gnome-player-1.scope"});
    EXPECT_EQ(idOf(100), "player");
    EXPECT_EQ(nameOf(100), "Player");
}

TEST_F(LinuxWorkspaceTest, BelievesAnotherApplicationsFileBeforeTheControlGroup) {
    desktop_.install("editor", "Editor", "/usr/bin/editor");
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player", .unit = "app-editor-1.scope"});
    EXPECT_EQ(idOf(100), "player");
}

TEST_F(LinuxWorkspaceTest, BelievesTheControlGroupAmongEntriesOfOneFile) {
    desktop_.install("browser", "Browser", "/usr/bin/browser");
    desktop_.install("browser-music", "Music", "/usr/bin/browser --app=music");
    proc_.run(
        {.pid = 100, .executable = "/usr/bin/browser", .unit = "app-browser\\x2dmusic-1.scope"});
    proc_.run({.pid = 101, .executable = "/usr/bin/browser"});
    EXPECT_EQ(idOf(100), "browser-music");
    EXPECT_EQ(idOf(101), "browser");
}

TEST_F(LinuxWorkspaceTest, FollowsLinksFromTheEntryToTheFile) {
    const auto bin = desktop_.folders.executableFolders[0];
    const auto real = desktop_.directory.path() / "opt/vendor/player/player-bin";
    ScriptedProc::write(real, "program");
    std::filesystem::create_directories(bin);
    std::filesystem::create_symlink(real, bin / "start-music");
    desktop_.install("player", "Player", "start-music %U");
    proc_.run({.pid = 100, .executable = real.string()});
    EXPECT_EQ(idOf(100), "player");
}

TEST_F(LinuxWorkspaceTest, FindsWhatAStartScriptRuns) {
    desktop_.install("chromium", "Chromium", "/usr/bin/chromium %U");
    desktop_.install("chrome", "Chrome", "/opt/vendor/chrome/start");
    desktop_.install("office", "Office", "office");
    proc_.run({.pid = 100, .executable = "/usr/lib/chromium/chromium"});
    proc_.run({.pid = 101, .executable = "/usr/lib/chromium/crash-handler"});
    proc_.run({.pid = 102, .executable = "/opt/vendor/chrome/chrome-main"});
    proc_.run({.pid = 103, .executable = "/usr/lib/office/program/soffice.bin"});
    proc_.run({.pid = 104, .executable = "/home/anna/office/program"});
    EXPECT_EQ(idOf(100), "chromium");
    EXPECT_EQ(idOf(101), "chromium");
    EXPECT_EQ(idOf(102), "chrome");
    EXPECT_EQ(idOf(103), "office");
    EXPECT_EQ(idOf(104), "(none)");
}

TEST_F(LinuxWorkspaceTest, KnowsProgramsByTheirScripts) {
    desktop_.install("org.example.Player", "Player", "quod");
    desktop_.install("tagger", "Tagger", "python3 /usr/share/tagger/main.py");
    desktop_.install("python", "Python", "/usr/bin/python3.11");
    proc_.run({.pid = 100, .executable = "/usr/bin/python3.11", .arguments = {"/usr/bin/quod"}});
    proc_.run({.pid = 101,
               .executable = "/usr/bin/python3.11",
               .arguments = {"/usr/share/tagger/main.py"}});
    proc_.run({.pid = 102, .executable = "/usr/bin/python3.11", .arguments = {"own.py"}});
    proc_.run({.pid = 103, .executable = "/usr/bin/python3.11"});
    proc_.run({.pid = 104,
               .executable = "/usr/lib/jvm/17/bin/java",
               .arguments = {"-Xmx1G", "-jar", "/usr/share/java/quod.jar"}});
    EXPECT_EQ(idOf(100), "org.example.Player");
    EXPECT_EQ(idOf(101), "tagger");
    EXPECT_EQ(idOf(102), "(none)");
    EXPECT_EQ(idOf(103), "(none)");
    EXPECT_EQ(idOf(104), "org.example.Player");
}

TEST_F(LinuxWorkspaceTest, KnowsAnElectronProgramByItsArchive) {
    desktop_.install("chat", "Chat", "/usr/bin/chat");
    proc_.run({.pid = 100,
               .executable = "/usr/lib/electron28/electron",
               .arguments = {"--no-sandbox", "/usr/lib/chat/resources/app.asar"}});
    proc_.run({.pid = 101,
               .parent = 100,
               .executable = "/usr/lib/electron28/electron",
               .arguments = {"--type=utility"}});
    proc_.run({.pid = 102,
               .parent = 100,
               .executable = "/usr/lib/electron28/electron",
               .arguments = {"/home/anna/own.asar"}});
    EXPECT_EQ(idOf(100), "chat");
    EXPECT_EQ(idOf(101), "chat");
    EXPECT_EQ(idOf(102), "(none)");
}

TEST_F(LinuxWorkspaceTest, KnowsAnElectronProgramBesideElectronsOwnEntry) {
    const std::string electron = "/usr/lib/electron28/electron";
    desktop_.install("electron28", "Electron 28", electron + " %u");
    desktop_.install("chat", "Chat", "/usr/bin/chat");
    proc_.run(
        {.pid = 100, .executable = electron, .arguments = {"/usr/lib/chat/resources/app.asar"}});
    proc_.run({.pid = 101, .parent = 100, .executable = electron, .arguments = {"--type=zygote"}});
    proc_.run({.pid = 102, .parent = 101, .executable = electron, .arguments = {"--type=utility"}});
    proc_.run({.pid = 103, .executable = electron, .arguments = {"/home/anna/own.asar"}});
    proc_.run({.pid = 104, .parent = 103, .executable = electron, .arguments = {"--type=utility"}});
    proc_.run({.pid = 105, .executable = electron});
    EXPECT_EQ(idOf(100), "chat");
    EXPECT_EQ(idOf(101), "chat");
    EXPECT_EQ(idOf(102), "chat");
    EXPECT_EQ(idOf(103), "(none)");
    EXPECT_EQ(idOf(104), "(none)");
    EXPECT_EQ(idOf(105), "electron28");
}

TEST_F(LinuxWorkspaceTest, KnowsWindowsProgramsApart) {
    desktop_.install("chess", "Chess", R"(env WINEPREFIX="/home/a/.wine" wine C:\\\\chess.exe)");
    desktop_.install("radio", "Radio", R"(env WINEPREFIX="/home/a/.wine" wine C:\\\\radio.exe)");
    desktop_.install("tuner", "Tuner", R"(wine C:\\\\start.exe /Unix /home/a/tuner.lnk)",
                     "StartupWMClass=tuner.exe");
    const std::string loader = "/usr/lib/wine/wine64-preloader";
    proc_.run({.pid = 100, .executable = loader, .commandName = "C:\\radio.exe"});
    proc_.run({.pid = 101, .executable = loader, .commandName = "C:\\windows\\services.exe"});
    proc_.run({.pid = 102, .executable = loader, .commandName = "D:\\Tuner\\Tuner.exe"});
    proc_.run({.pid = 103, .executable = "/usr/bin/wine"});
    EXPECT_EQ(idOf(100), "radio");
    EXPECT_EQ(idOf(101), "(none)");
    EXPECT_EQ(idOf(102), "tuner");
    EXPECT_EQ(idOf(103), "(none)");
}

TEST_F(LinuxWorkspaceTest, TakesNoneOfSeveralEntriesThatTellOneProgramDifferentThings) {
    desktop_.install("game-a", "Game A", "/opt/engine/engine --game=a");
    desktop_.install("game-b", "Game B", "/opt/engine/engine --game=b");
    desktop_.install("game-hidden", "Game", "/opt/engine/engine --open %U", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/opt/engine/engine"});
    proc_.run({.pid = 101, .executable = "/usr/lib/engine/engine"});
    proc_.run({.pid = 102, .executable = "/opt/engine/engine", .unit = "app-game\\x2db-1.scope"});
    EXPECT_EQ(idOf(100), "(none)");
    EXPECT_EQ(idOf(101), "(none)");
    EXPECT_EQ(idOf(102), "game-b");
    desktop_.install("engine", "Engine", "/opt/engine/engine %U");
    EXPECT_EQ(idOf(100), "engine");
}

TEST_F(LinuxWorkspaceTest, KnowsAProgramByItsWindowClass) {
    desktop_.install("org.example.Player", "Player", "start-it", "StartupWMClass=Plyr");
    proc_.run({.pid = 100, .executable = "/opt/x/plyr"});
    proc_.run({.pid = 101, .executable = "/opt/x/other"});
    proc_.run({.pid = 102, .executable = "/tmp/.mount_PlayerX1/plyr"});
    EXPECT_EQ(idOf(100), "org.example.Player");
    EXPECT_EQ(idOf(102), "org.example.Player");
    EXPECT_EQ(idOf(101), "(none)");
    desktop_.clients.play({.pid = 101, .name = "x", .binary = "plyr"});
    EXPECT_EQ(idOf(101), "org.example.Player");
}

TEST_F(LinuxWorkspaceTest, DoesNotTakeAnybodysFileForAnApplicationOfItsName) {
    desktop_.install("code", "Code", "/usr/share/code/code", "StartupWMClass=Code");
    desktop_.install("tool", "Tool", "/home/anna/tool/tool");
    const std::string python = "/usr/bin/python3.11";
    proc_.run({.pid = 100, .executable = python, .arguments = {"code.py"}});
    proc_.run({.pid = 101, .executable = python, .arguments = {"/home/anna/code.py"}});
    proc_.run({.pid = 102, .executable = "/home/anna/src/x/code"});
    for (const std::int32_t pid : {100, 101, 102}) {
        EXPECT_EQ(idOf(pid), "(none)") << pid;
        desktop_.clients.play({.pid = pid, .name = "x", .binary = pid == 102 ? "code" : "python3"});
        EXPECT_EQ(idOf(pid), "(no id)") << pid;
    }
    proc_.run({.pid = 110, .executable = "/usr/lib/x/code"});
    proc_.run({.pid = 111, .executable = "/snap/x/12/code"});
    proc_.run({.pid = 112, .executable = desktop_.folders.executableFolders[0] / "code"});
    for (const std::int32_t pid : {110, 111, 112})
        EXPECT_EQ(idOf(pid), "code") << pid;
    proc_.run({.pid = 120, .executable = "/home/anna/tool/lib/tool-bin"});
    proc_.run({.pid = 121, .executable = "/home/anna/lib/tool-bin"});
    EXPECT_EQ(idOf(120), "tool");
    EXPECT_EQ(idOf(121), "(none)");
}

// The process tree.

TEST_F(LinuxWorkspaceTest, CountsHelpersToTheirApplication) {
    desktop_.install("browser", "Browser", "/usr/bin/browser", "Icon=browser");
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/browser"});
    proc_.run({.pid = 101, .parent = 100, .session = 50, .executable = "/usr/libexec/sandbox"});
    proc_.run({.pid = 102, .parent = 101, .session = 50, .executable = "/usr/libexec/WebProcess"});
    desktop_.clients.play({.pid = 102, .name = "WebKit WebProcess", .iconName = "web"});
    const auto helper = desktop_.workspace.runningApplication(102);
    ASSERT_TRUE(helper);
    EXPECT_EQ(helper->processIdentifier, 102);
    EXPECT_EQ(helper->localizedName, "Browser");
    EXPECT_EQ(helper->bundleIdentifier, "browser");
    EXPECT_EQ(helper->activationPolicy, ActivationPolicy::regular);
    EXPECT_EQ(helper->icon->cacheKey(),
              desktop_.workspace.runningApplication(100)->icon->cacheKey());
}

TEST_F(LinuxWorkspaceTest, CountsHelpersOfOtherSessionsWhenTheyShareFileOrFolder) {
    desktop_.install("browser", "Browser", "browser");
    desktop_.install("other", "Other", "other");
    const std::string folder = "/opt/browser/";
    proc_.run({.pid = 100, .session = 50, .executable = folder + "browser"});
    proc_.run({.pid = 101, .parent = 100, .session = 51, .executable = folder + "browser"});
    proc_.run({.pid = 102, .parent = 100, .session = 52, .executable = folder + "audio"});
    proc_.run({.pid = 103, .parent = 100, .session = 53, .executable = "/usr/bin/tool"});
    EXPECT_EQ(idOf(101), "browser");
    EXPECT_EQ(idOf(102), "browser");
    EXPECT_EQ(idOf(103), "(none)");
}

TEST_F(LinuxWorkspaceTest, LeavesPlayersStartedInATerminalAlone) {
    desktop_.install("org.example.Terminal", "Terminal", "/usr/bin/terminal",
                     "Categories=System;TerminalEmulator;");
    const std::string unit = "app-gnome-org.example.Terminal-1.scope";
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/terminal", .unit = unit});
    proc_.run(
        {.pid = 101, .parent = 100, .session = 101, .executable = "/usr/bin/bash", .unit = unit});
    proc_.run(
        {.pid = 102, .parent = 101, .session = 101, .executable = "/usr/bin/ffplay", .unit = unit});
    proc_.run(
        {.pid = 103, .parent = 100, .session = 50, .executable = "/usr/bin/ffplay", .unit = unit});
    desktop_.clients.play({.pid = 102, .name = "ffplay"});
    desktop_.clients.play({.pid = 103, .name = "ffplay"});
    EXPECT_EQ(idOf(100), "org.example.Terminal");
    EXPECT_EQ(idOf(101), "(none)");
    EXPECT_EQ(idOf(102), "(no id)");
    EXPECT_EQ(nameOf(102), "ffplay");
    EXPECT_EQ(nameOf(103), "ffplay");
}

TEST_F(LinuxWorkspaceTest, DoesNotCountToTheDesktopWhatItStarts) {
    desktop_.install("shell", "Shell", "/usr/bin/shell", "NoDisplay=true");
    desktop_.install("files", "Files", "/usr/bin/files", "Categories=FileManager;");
    desktop_.install("tui", "Text Files", "/usr/bin/tui", "Terminal=true");
    std::int32_t pid = 100;
    for (const char* starter : {"shell", "files", "tui"}) {
        proc_.run({.pid = pid, .session = 50, .executable = "/usr/bin/" + std::string(starter)});
        proc_.run({.pid = pid + 1, .parent = pid, .session = 50, .executable = "/opt/ffplay"});
        EXPECT_EQ(idOf(pid), starter);
        EXPECT_EQ(idOf(pid + 1), "(none)") << starter;
        pid += 10;
    }
}

TEST_F(LinuxWorkspaceTest, PassesOverTheControlGroupOfWhatMenusDoNotShow) {
    desktop_.install("shell", "Shell", "/usr/bin/shell", "NoDisplay=true");
    const std::string unit = "app-shell-1.scope";
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/shell", .unit = unit});
    proc_.run(
        {.pid = 101, .parent = 100, .session = 50, .executable = "/usr/bin/ffplay", .unit = unit});
    desktop_.clients.play({.pid = 101, .name = "ffplay"});
    EXPECT_EQ(idOf(100), "shell");
    EXPECT_EQ(nameOf(101), "ffplay");
}

TEST_F(LinuxWorkspaceTest, BelievesTheControlGroupOfAHiddenEntryWhoseFileTheProcessRuns) {
    desktop_.install("agent", "Agent", "/usr/bin/agent", "NoDisplay=true");
    desktop_.install("agent-mail", "Mail Agent", "/usr/bin/agent --mail", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/usr/bin/agent", .unit = "app-agent\\x2dmail-1.scope"});
    EXPECT_EQ(idOf(100), "agent-mail");
}

TEST_F(LinuxWorkspaceTest, AsksTheNearestApplicationAboveOnly) {
    desktop_.install("launcher", "Launcher", "/usr/bin/launcher");
    desktop_.install("terminal", "Terminal", "/usr/bin/terminal", "Categories=TerminalEmulator;");
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/launcher"});
    proc_.run({.pid = 101, .parent = 100, .session = 50, .executable = "/usr/bin/terminal"});
    proc_.run({.pid = 102, .parent = 101, .session = 50, .executable = "/usr/bin/ffplay"});
    EXPECT_EQ(idOf(102), "(none)");
}

TEST_F(LinuxWorkspaceTest, NeverCountsToTheFirstProcess) {
    desktop_.install("init", "Init", "/sbin/init");
    proc_.run({.pid = 1, .parent = 0, .session = 1, .executable = "/sbin/init"});
    proc_.run({.pid = 100, .parent = 1, .session = 1, .executable = "/sbin/init"});
    proc_.run({.pid = 101, .parent = 1, .session = 1, .executable = "/usr/bin/ffplay"});
    EXPECT_EQ(idOf(101), "(none)");
}

TEST_F(LinuxWorkspaceTest, BearsALoopOfParents) {
    proc_.run({.pid = 100, .parent = 101, .executable = "/a"});
    proc_.run({.pid = 101, .parent = 100, .executable = "/b"});
    EXPECT_EQ(idOf(100), "(none)");
}

// Programs without an entry, and hidden ones.

TEST_F(LinuxWorkspaceTest, ListsAPlayerWithoutAnEntryUnderTheNameItGives) {
    proc_.run({.pid = 100, .executable = "/usr/bin/ffplay", .name = "ffplay"});
    desktop_.clients.play(
        {.pid = 100, .name = "FFplay", .iconName = "audio-player", .binary = "ffplay"});
    const auto application = desktop_.workspace.runningApplication(100);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->localizedName, "FFplay");
    EXPECT_FALSE(application->bundleIdentifier);
    EXPECT_EQ(application->activationPolicy, ActivationPolicy::regular);
    EXPECT_THAT(application->icon->cacheKey(), ::testing::HasSubstr("audio-player"));
}

TEST_F(LinuxWorkspaceTest, OpensNoFileThatAClientNamesAsItsIcon) {
    const auto picture = desktop_.directory.path() / "private.png";
    ScriptedProc::write(picture, "picture");
    for (const std::string& icon :
         {picture.string(), std::string("../private"), std::string("..")}) {
        desktop_.clients.play({.pid = 100, .name = "x", .iconName = icon});
        desktop_.nextPass();
        EXPECT_FALSE(desktop_.workspace.runningApplication(100)->icon) << icon;
    }
}

TEST_F(LinuxWorkspaceTest, TakesTheFirstNameThatCanBeShown) {
    proc_.run({.pid = 100, .executable = "/usr/bin/ffplay", .name = "short"});
    desktop_.clients.play({.pid = 100, .name = "\xFF", .binary = "binary"});
    EXPECT_EQ(nameOf(100), "binary");
    desktop_.clients.play({.pid = 100, .name = "", .binary = "a\nb"});
    EXPECT_EQ(nameOf(100), "short");
    proc_.run({.pid = 100, .executable = "/usr/bin/ffplay", .name = ""});
    EXPECT_EQ(nameOf(100), "(none)");
}

TEST_F(LinuxWorkspaceTest, ListsAClientWhoseProcessCannotBeSeen) {
    desktop_.install("org.example.Player", "Player", "player");
    desktop_.clients.play({.pid = 4711, .name = "Radio"});
    desktop_.clients.play({.pid = 4712, .name = "x", .applicationID = "org.example.Player"});
    EXPECT_EQ(nameOf(4711), "Radio");
    EXPECT_EQ(nameOf(4712), "Player");
}

TEST_F(LinuxWorkspaceTest, MixesHiddenEntriesOnlyWhenTheyPlay) {
    desktop_.install("agent", "Agent", "/usr/bin/agent", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/usr/bin/agent"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->activationPolicy,
              ActivationPolicy::accessory);
    desktop_.clients.play({.pid = 100, .name = "agent"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->activationPolicy,
              ActivationPolicy::regular);
}

// Sandboxes.

TEST_F(LinuxWorkspaceTest, FindsTheProcessThatAFlatpakKnowsUnderAnotherID) {
    desktop_.install("org.example.Player", "Player", "flatpak run org.example.Player");
    desktop_.install("other", "Other", "/usr/bin/other");
    proc_.run({.pid = 2, .executable = "/usr/bin/other"});
    proc_.run({.pid = 500,
               .executable = "/app/bin/player",
               .flatpakID = "org.example.Player",
               .innermostPID = 2});
    EXPECT_EQ(idOf(2), "other");
    desktop_.clients.play({.pid = 2, .name = "x", .applicationID = "org.example.Player"});
    EXPECT_EQ(idOf(2), "org.example.Player");
    EXPECT_EQ(idOf(500), "org.example.Player");
    EXPECT_THAT(listedPIDs(), ElementsAre(500, 2));
}

TEST_F(LinuxWorkspaceTest, FindsAFlatpakWithoutAnEntryUnderItsInnerIDToo) {
    proc_.run({.pid = 500,
               .executable = "/app/bin/tool",
               .flatpakID = "org.example.Tool",
               .innermostPID = 3,
               .name = "tool"});
    desktop_.clients.play({.pid = 3, .applicationID = "org.example.Tool"});
    EXPECT_EQ(nameOf(3), "tool");
}

TEST_F(LinuxWorkspaceTest, BelievesAProcessThatIsOfTheClientsFlatpak) {
    desktop_.install("org.example.Player", "Player", "flatpak run org.example.Player");
    proc_.run({.pid = 500,
               .executable = "/app/bin/player",
               .flatpakID = "org.example.Player",
               .innermostPID = 2});
    desktop_.clients.play({.pid = 500, .name = "x", .applicationID = "org.example.Player"});
    EXPECT_THAT(listedPIDs(), ElementsAre(500));
}

// Names.

TEST_F(LinuxWorkspaceTest, KeepsProgramsOfOneNameApart) {
    proc_.run({.pid = 100, .executable = "/usr/bin/foo"});
    proc_.run({.pid = 101, .executable = "/usr/bin/bar"});
    proc_.run({.pid = 102, .executable = "/usr/bin/bar"});
    desktop_.clients.play({.pid = 101, .name = "Playback"});
    desktop_.clients.play({.pid = 102, .name = "Playback"});
    EXPECT_EQ(nameOf(101), "Playback");
    desktop_.clients.play({.pid = 100, .name = "Playback"});
    EXPECT_EQ(nameOf(100), "Playback (foo)");
    EXPECT_EQ(nameOf(101), "Playback (bar)");
    EXPECT_EQ(nameOf(102), "Playback (bar)");
    desktop_.clients.stop(100);
    EXPECT_EQ(nameOf(101), "Playback");
}

TEST_F(LinuxWorkspaceTest, TellsProgramsOfOneFileNameByTheirPaths) {
    proc_.run({.pid = 100, .executable = "/usr/bin/foo"});
    proc_.run({.pid = 101, .executable = "/opt/foo"});
    proc_.run({.pid = 102, .executable = "/usr/bin/bar"});
    for (const std::int32_t pid : {100, 101, 102})
        desktop_.clients.play({.pid = pid, .name = "Playback"});
    EXPECT_EQ(nameOf(100), "Playback (/usr/bin/foo)");
    EXPECT_EQ(nameOf(101), "Playback (/opt/foo)");
    EXPECT_EQ(nameOf(102), "Playback (bar)");
}

TEST_F(LinuxWorkspaceTest, TellsScriptsOfOneInterpreterApart) {
    std::int32_t pid = 100;
    for (const char* script : {"/home/a/one.py", "/home/a/two.py"}) {
        proc_.run({.pid = pid, .executable = "/usr/bin/python3.11", .arguments = {script}});
        desktop_.clients.play({.pid = pid, .name = "python3.11"});
        ++pid;
    }
    EXPECT_EQ(nameOf(100), "python3.11 (one.py)");
    EXPECT_EQ(nameOf(101), "python3.11 (two.py)");
}

TEST_F(LinuxWorkspaceTest, KeepsEntriesOfOneNameApart) {
    desktop_.install("org.a.Music", "Music", "/usr/bin/a-music");
    desktop_.install("org.b.Music", "Music", "/usr/bin/b-music");
    proc_.run({.pid = 100, .executable = "/usr/bin/a-music"});
    EXPECT_EQ(nameOf(100), "Music");
    proc_.run({.pid = 101, .executable = "/usr/bin/b-music"});
    EXPECT_EQ(nameOf(100), "Music (a-music)");
    EXPECT_EQ(nameOf(101), "Music (b-music)");
}

TEST_F(LinuxWorkspaceTest, LetsAHiddenPartShareItsApplicationsName) {
    desktop_.install("player", "Player", "/usr/bin/player");
    desktop_.install("player-agent", "Player", "/usr/libexec/agent", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    proc_.run({.pid = 101, .executable = "/usr/libexec/agent"});
    EXPECT_EQ(nameOf(100), "Player");
    EXPECT_EQ(nameOf(101), "Player");
}

// Looks.

TEST_F(LinuxWorkspaceTest, ListsApplicationsInTheOrderOfTheirStart) {
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player", .startTime = 30});
    proc_.run({.pid = 101, .executable = "/usr/bin/player", .startTime = 10});
    proc_.run({.pid = 102, .executable = "/usr/bin/other", .startTime = 5});
    proc_.run({.pid = 103, .executable = "/usr/bin/player", .startTime = 20});
    EXPECT_THAT(listedPIDs(), ElementsAre(101, 103, 100));
}

TEST_F(LinuxWorkspaceTest, AnswersOnePassFromOneLook) {
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    ASSERT_TRUE(desktop_.workspace.runningApplication(100));
    proc_.end(100);
    EXPECT_EQ(desktop_.workspace.runningApplications().size(), 1U);
    desktop_.nextPass();
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
    EXPECT_TRUE(desktop_.workspace.runningApplications().empty());
}

TEST_F(LinuxWorkspaceTest, LooksAgainForAProcessThatHasComeSince) {
    desktop_.install("player", "Player", "/usr/bin/player");
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    EXPECT_TRUE(desktop_.workspace.runningApplication(100));
}

TEST_F(LinuxWorkspaceTest, LooksOnceForAProcessThatCannotBeRead) {
    const LookCounter counter;
    const LinuxWorkspace workspace(desktop_.folders, &counter, proc_.root(),
                                   [this] { return desktop_.now; });
    std::filesystem::create_directories(proc_.root() / "100"); // and nothing in it
    for (int question = 0; question < 10; ++question)
        EXPECT_FALSE(workspace.runningApplication(100));
    EXPECT_EQ(counter.looks(), 2); // the first of all, and one for this process
    desktop_.nextPass();
    for (int question = 0; question < 10; ++question)
        EXPECT_FALSE(workspace.runningApplication(100));
    EXPECT_EQ(counter.looks(), 4);
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    desktop_.nextPass();
    EXPECT_TRUE(workspace.runningApplication(100));
}

TEST_F(LinuxWorkspaceTest, LooksAgainForAClientThatHasComeOrChangedSince) {
    proc_.run({.pid = 100, .executable = "/usr/bin/x"});
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
    desktop_.clients.play({.pid = 100, .name = "One"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->localizedName, "One");
    desktop_.clients.play({.pid = 100, .name = "Two"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->localizedName, "Two");
    desktop_.clients.stop(100);
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
}

TEST_F(LinuxWorkspaceTest, SeesApplicationsThatAreInstalledAndRemoved) {
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    EXPECT_EQ(idOf(100), "(none)");
    desktop_.install("player", "Player", "/usr/bin/player");
    EXPECT_EQ(idOf(100), "player");
    std::filesystem::remove(desktop_.entryFile("player"));
    EXPECT_EQ(idOf(100), "(none)");
}

TEST_F(LinuxWorkspaceTest, SeesAtOnceWhenAProcessThatPlaysRunsSomethingElse) {
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/sh"});
    desktop_.clients.play({.pid = 100, .name = "x"});
    for (int look = 0; look < 10; ++look)
        EXPECT_EQ(idOf(100), "(no id)");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    EXPECT_EQ(idOf(100), "player");
}

TEST(LinuxWorkspace, AnswersSeveralThreadsWhileTheDesktopChanges) {
    ScriptedDesktop desktop;
    desktop.install("player", "Player", "/usr/bin/player", "Icon=player");
    ScriptedProc::write(desktop.folders.dataFolders[0] / "pixmaps/player.png", "picture");
    desktop.proc.run({.pid = 100, .executable = "/usr/bin/player"});
    std::atomic<int> calls = 0;
    // Every other question brings a new look.
    const LinuxWorkspace workspace(desktop.folders, &desktop.clients, desktop.proc.root(), [&] {
        return std::chrono::steady_clock::time_point(std::chrono::milliseconds(100) * ++calls);
    });
    std::atomic<int> found = 0;
    constexpr int kRounds = 50;
    const auto ask = [&] {
        for (int round = 0; round < kRounds; ++round) {
            const auto file = workspace.urlForApplication("player");
            const bool hasPicture = file && workspace.iconForFile(*file)->imageFile(48);
            if (hasPicture && workspace.runningApplication(100))
                ++found;
        }
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < 3; ++number)
        threads.emplace_back(ask);
    for (int round = 0; round < kRounds; ++round) {
        desktop.install("radio" + std::to_string(round), "Radio", "radio");
        desktop.proc.run({.pid = 200 + round, .executable = "/usr/bin/radio"});
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found, 3 * kRounds);
}

TEST(LinuxWorkspace, WorksWithoutAnAudioServer) {
    ScriptedDesktop desktop;
    desktop.install("player", "Player", "/usr/bin/player");
    desktop.proc.run({.pid = 100, .executable = "/usr/bin/player"});
    const LinuxWorkspace workspace(desktop.folders, nullptr, desktop.proc.root());
    ASSERT_TRUE(workspace.runningApplication(100));
    EXPECT_EQ(workspace.runningApplication(100)->localizedName, "Player");
}

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
