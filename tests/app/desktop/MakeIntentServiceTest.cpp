#include "app/desktop/makeIntentService.h"

#include "platform/qt/automation/IntentClient.h"
#include "tests/platform/qt/support/AskedAside.h"
#include "tests/platform/qt/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A program whose panel has not appeared, as others on the bus find it.
class TheIntentsOfTheProgram : public testing::Test {
protected:
    TheIntentsOfTheProgram() {
        startQt();
        bus_.emplace();
        own_.emplace(*bus_);
        other_.emplace(*bus_);
        service_ = makeIntentService(**own_, "com.meridane.orvanta.demo", log_);
        client_.emplace(**other_, QStringLiteral("com.meridane.orvanta.demo"));
    }

    std::optional<PrivateBus> bus_;
    std::optional<BusConnection> own_;
    std::optional<BusConnection> other_;
    RecordingLog log_;
    std::unique_ptr<IntentService> service_;
    std::optional<IntentClient> client_;
};

TEST_F(TheIntentsOfTheProgram, AnswerFromTheStart) {
    EXPECT_EQ(askedAside([&] { return client_->setVolume(300); }), "Volume set to 300%");
    EXPECT_EQ(askedAside([&] { return client_->setVolume(std::nullopt); }), "Volume set to 100%");
    EXPECT_EQ(askedAside([&] { return client_->toggleMute(); }), "Audio unmuted");
    EXPECT_EQ(askedAside([&] { return client_->listAudioApps(); }),
              "No audio apps are currently playing.");
    EXPECT_THAT(log_.texts(), IsEmpty());
}

TEST_F(TheIntentsOfTheProgram, AreOfferedWithTheProgramsNameInTheirPhrases) {
    const auto shortcuts = askedAside([&] { return client_->listShortcuts(); });
    ASSERT_EQ(shortcuts.size(), 3U);
    EXPECT_EQ(shortcuts[0],
              (IntentShortcut{
                  .method = "SetVolume",
                  .title = "Set Volume",
                  .phrases = {"Set Orvanta volume to {volume}", "Change Orvanta volume"},
                  .shortTitle = "Set Volume",
                  .symbol = "speaker.wave.2.fill",
                  .argument = IntentArgument{.name = "volume",
                                             .title = "Volume",
                                             .description = "Volume level as percentage (0-200)",
                                             .defaultValue = 100,
                                             .controlStyle = "stepper"}}));
    EXPECT_EQ(shortcuts[1].method, "ToggleMute");
    EXPECT_THAT(shortcuts[1].phrases,
                ElementsAre("Mute Orvanta", "Unmute Orvanta", "Toggle Orvanta mute"));
    EXPECT_FALSE(shortcuts[1].argument);
    EXPECT_EQ(shortcuts[2].method, "ListAudioApps");
    EXPECT_THAT(shortcuts[2].phrases,
                ElementsAre("List Orvanta audio apps", "Show Orvanta playing apps"));
}

} // namespace
} // namespace orvanta::test
