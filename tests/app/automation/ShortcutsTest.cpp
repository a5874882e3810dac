#include "app/automation/OrvantaShortcuts.h"
#include "app/automation/SetVolumeIntent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

struct Shortcuts : testing::Test {
    const std::span<const AppShortcut> all = OrvantaShortcuts::appShortcuts();
};

TEST_F(Shortcuts, AreThreeInTheirOrder) {
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].intent, AppIntent::setVolume);
    EXPECT_EQ(all[1].intent, AppIntent::toggleMute);
    EXPECT_EQ(all[2].intent, AppIntent::listAudioApps);
}

TEST_F(Shortcuts, AreAskedForInTheseWords) {
    EXPECT_THAT(all[0].phrases, ElementsAre("Set {application name} volume to {volume}",
                                            "Change {application name} volume"));
    EXPECT_THAT(all[1].phrases, ElementsAre("Mute {application name}", "Unmute {application name}",
                                            "Toggle {application name} mute"));
    EXPECT_THAT(all[2].phrases, ElementsAre("List {application name} audio apps",
                                            "Show {application name} playing apps"));
}

TEST_F(Shortcuts, AreShownByTheseTitlesAndSymbols) {
    EXPECT_EQ(all[0].title, "Set Volume");
    EXPECT_EQ(all[0].shortTitle, "Set Volume");
    EXPECT_EQ(all[0].systemImageName, "speaker.wave.2.fill");
    EXPECT_EQ(all[1].title, "Toggle Mute");
    EXPECT_EQ(all[1].shortTitle, "Toggle Mute");
    EXPECT_EQ(all[1].systemImageName, "speaker.slash.fill");
    EXPECT_EQ(all[2].title, "List Audio Apps");
    EXPECT_EQ(all[2].shortTitle, "List Audio Apps");
    EXPECT_EQ(all[2].systemImageName, "music.note.list");
}

TEST_F(Shortcuts, HaveAParameterWhereAPhraseNamesOne) {
    for (const AppShortcut& shortcut : all) {
        const bool isNamed = std::ranges::any_of(shortcut.phrases, [](std::string_view phrase) {
            return phrase.find("{volume}") != std::string_view::npos;
        });
        EXPECT_EQ(shortcut.parameter.has_value(), isNamed) << shortcut.title;
    }
}

TEST_F(Shortcuts, NameTheApplicationAndLeaveWhatIsStillToBeSaid) {
    EXPECT_EQ(OrvantaShortcuts::spoken("Set {application name} volume to {volume}", "Orvanta"),
              "Set Orvanta volume to {volume}");
    EXPECT_EQ(OrvantaShortcuts::spoken("Mute {application name}", "Orvanta"), "Mute Orvanta");
    EXPECT_EQ(OrvantaShortcuts::spoken("Mute", "Orvanta"), "Mute");
    for (const AppShortcut& shortcut : all)
        for (const std::string_view phrase : shortcut.phrases)
            EXPECT_THAT(OrvantaShortcuts::spoken(phrase, "Orvanta"), testing::HasSubstr("Orvanta"));
}

} // namespace
} // namespace orvanta::test
