#include "core/discovery/AudioProcessDiscovery.h"
#include "tests/e2e/support/ChromiumTab.h"
#include "tests/e2e/support/EndToEndTest.h"
#include "tests/support/ScopedEnvironment.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <list>
#include <string>
#include <vector>

namespace orvanta::test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/// The name of the icon in a desktop entry; empty when it names none.
std::string iconNamedIn(const fs::path& entry) {
    const std::string key = "Icon=";
    std::ifstream file(entry);
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(key))
            return line.substr(key.size());
    return "";
}

class ApplicationList : public EndToEndTest {
protected:
    /// Lists the applications as soon as there are `count`, and all of them play.
    std::vector<AudioApp> awaitPlaying(std::size_t count) {
        AudioProcessDiscovery discovery(mixer().platform());
        std::vector<AudioApp> apps;
        eventually(Seconds(10), [&] {
            apps = discovery.discoverAudioApps();
            return apps.size() == count && std::ranges::all_of(apps, &AudioApp::isPlaying);
        });
        return apps;
    }

    static std::vector<std::string> namesOf(const std::vector<AudioApp>& apps) {
        std::vector<std::string> names;
        for (const AudioApp& app : apps)
            names.push_back(app.name);
        return names;
    }

    /// The application's picture is a file, and the one that its desktop entry names.
    void expectIconOfEntry(const AudioApp& app) {
        ASSERT_TRUE(app.bundleIdentifier) << app.name;
        const auto entry = mixer().platform().workspace.urlForApplication(*app.bundleIdentifier);
        ASSERT_TRUE(entry) << app.name;
        ASSERT_TRUE(app.icon) << app.name;
        const auto picture = app.icon->imageFile(48);
        ASSERT_TRUE(picture) << app.name;
        EXPECT_TRUE(fs::is_regular_file(*picture)) << *picture;
        EXPECT_EQ(picture->stem().string(), iconNamedIn(*entry));
    }

private:
    // Entries are named in the user's language.
    ScopedEnvironment language_{{{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", std::nullopt}}};
};

TEST_F(ApplicationList, NamesPlayersAndABrowserAsTheirEntriesDoOrAsTheyDoThemselves) {
    const auto file = noiseFile(NoiseSignal(21));
    const ChromiumTab tab(file, server_.directory());
    std::list<RealPlayer> players;
    for (const PlayerKind kind :
         {PlayerKind::pwPlay, PlayerKind::paplay, PlayerKind::aplay, PlayerKind::mpv})
        players.emplace_back(kind, file, server_.directory());
    const pid_t browser = tab.awaitAudioProcess(graph());

    const std::vector<AudioApp> apps = awaitPlaying(5);

    ASSERT_THAT(namesOf(apps), ElementsAre("aplay", "Chromium Web Browser", "mpv Media Player",
                                           "paplay", "pw-play"));
    for (const AudioApp& app : apps) {
        EXPECT_TRUE(app.isPlaying) << app.name;
        EXPECT_EQ(app.audioObjectID, mixer().processObject(app.pid)) << app.name;
    }
    // What plays is a helper without a name of its own; the row is the browser's all the same.
    EXPECT_EQ(apps[1].pid, browser);
    EXPECT_NE(apps[1].pid, tab.pid());
    expectIconOfEntry(apps[1]);
    expectIconOfEntry(apps[2]);
    for (const std::size_t withoutEntry : {0U, 3U, 4U}) {
        EXPECT_FALSE(apps[withoutEntry].bundleIdentifier) << apps[withoutEntry].name;
        EXPECT_FALSE(apps[withoutEntry].icon) << apps[withoutEntry].name;
    }
}

TEST_F(ApplicationList, MakesOneRowOfSeveralProcessesOfAnApplication) {
    const auto file = noiseFile(NoiseSignal(22));
    const RealPlayer first(PlayerKind::mpv, file, server_.directory());
    const RealPlayer second(PlayerKind::mpv, file, server_.directory());
    for (const RealPlayer* const player : {&first, &second}) {
        const AudioObjectID process = mixer().awaitProcess(player->pid());
        ASSERT_TRUE(eventually(Seconds(10), [&] { return mixer().isRunningOutput(process); }));
    }

    EXPECT_THAT(namesOf(awaitPlaying(1)), ElementsAre("mpv Media Player"));
}

TEST_F(ApplicationList, TellsProgramsOfOneNameApartByTheirExecutables) {
    const fs::path radio = server_.directory() / "radio";
    const fs::path game = server_.directory() / "game";
    for (const fs::path& copy : {radio, game})
        fs::copy_file(StreamClient::executable(), copy);
    StreamClient first({.seed = 23, .name = "Playback", .copy = radio});
    StreamClient second({.seed = 24, .name = "Playback", .copy = game});
    first.open();
    second.open();

    const std::vector<AudioApp> apps = awaitPlaying(2);
    ASSERT_THAT(namesOf(apps), ElementsAre("Playback (game)", "Playback (radio)"));
    EXPECT_EQ(apps[0].pid, second.pid());
    EXPECT_EQ(apps[1].pid, first.pid());

    // Alone it needs nothing behind its name.
    first.kill();
    EXPECT_TRUE(eventually(Seconds(10), [&] {
        return namesOf(AudioProcessDiscovery(mixer().platform()).discoverAudioApps()) ==
               std::vector<std::string>{"Playback"};
    }));
}

} // namespace

} // namespace orvanta::test
