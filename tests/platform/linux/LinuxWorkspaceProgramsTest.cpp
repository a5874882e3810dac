// Applications that are known by the program a process runs.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

#include <filesystem>
#include <string>

namespace orvanta::test {
namespace {

constexpr const char* kElectron = "/usr/lib/electron28/electron";
constexpr const char* kPython = "/usr/bin/python3.11";

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
    desktop_.install("python", "Python", kPython);
    proc_.run({.pid = 100, .executable = kPython, .arguments = {"/usr/bin/quod"}});
    proc_.run({.pid = 101, .executable = kPython, .arguments = {"/usr/share/tagger/main.py"}});
    proc_.run({.pid = 102, .executable = kPython, .arguments = {"own.py"}});
    proc_.run({.pid = 103, .executable = kPython});
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
               .executable = kElectron,
               .arguments = {"--no-sandbox", "/usr/lib/chat/resources/app.asar"}});
    proc_.run(
        {.pid = 101, .parent = 100, .executable = kElectron, .arguments = {"--type=utility"}});
    proc_.run(
        {.pid = 102, .parent = 100, .executable = kElectron, .arguments = {"/home/anna/own.asar"}});
    EXPECT_EQ(idOf(100), "chat");
    EXPECT_EQ(idOf(101), "chat");
    EXPECT_EQ(idOf(102), "(none)");
}

TEST_F(LinuxWorkspaceTest, KnowsAnElectronProgramBesideElectronsOwnEntry) {
    desktop_.install("electron28", "Electron 28", std::string(kElectron) + " %u");
    desktop_.install("chat", "Chat", "/usr/bin/chat");
    proc_.run(
        {.pid = 100, .executable = kElectron, .arguments = {"/usr/lib/chat/resources/app.asar"}});
    proc_.run({.pid = 101, .parent = 100, .executable = kElectron, .arguments = {"--type=zygote"}});
    proc_.run(
        {.pid = 102, .parent = 101, .executable = kElectron, .arguments = {"--type=utility"}});
    proc_.run({.pid = 103, .executable = kElectron, .arguments = {"/home/anna/own.asar"}});
    proc_.run(
        {.pid = 104, .parent = 103, .executable = kElectron, .arguments = {"--type=utility"}});
    proc_.run({.pid = 105, .executable = kElectron});
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
    proc_.run({.pid = 100, .executable = kPython, .arguments = {"code.py"}});
    proc_.run({.pid = 101, .executable = kPython, .arguments = {"/home/anna/code.py"}});
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

} // namespace
} // namespace orvanta::test
