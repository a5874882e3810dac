#include "platform/qt/automation/IntentClient.h"

#include "tests/platform/qt/automation/OfferedIntents.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <stdexcept>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

const QString kOfferedName = QStringLiteral("com.meridane.orvanta");

class IntentClientTest : public testing::Test {
protected:
    IntentClientTest() {
        startQt();
        bus_.emplace();
        own_.emplace(*bus_);
        other_.emplace(*bus_);
        client_.emplace(**other_, kOfferedName);
    }

    void offer() { service_.emplace(**own_, kOfferedName, log_, offered_.intents()); }

    /// What `question` answers, or the sentence that it throws, while the event loop here runs.
    template <class Question>
    auto asked(Question question) {
        auto answer = std::async(std::launch::async, question);
        EXPECT_TRUE(eventuallyInEventLoop(Seconds(30), [&] {
            return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        }));
        return answer.get();
    }

    std::string complaint() {
        return asked([this]() -> std::string {
            try {
                return "it answers " + client_->toggleMute();
            } catch (const std::runtime_error& failure) {
                return failure.what();
            }
        });
    }

    std::optional<PrivateBus> bus_;
    std::optional<BusConnection> own_;
    std::optional<BusConnection> other_;
    RecordingLog log_;
    OfferedIntents offered_;
    std::optional<IntentService> service_;
    std::optional<IntentClient> client_;
};

TEST_F(IntentClientTest, IsAnsweredWithTheLineOfTheIntent) {
    offer();
    EXPECT_EQ(asked([&] { return client_->setVolume(-5); }), "Volume set to -5");
    EXPECT_EQ(asked([&] { return client_->setVolume(std::nullopt); }), "Volume set to what holds");
    EXPECT_EQ(asked([&] { return client_->toggleMute(); }), "All audio muted");
    EXPECT_EQ(asked([&] { return client_->listAudioApps(); }), "Playing: Müsik, ♫");
    EXPECT_THAT(offered_.volumes, ElementsAre(-5, std::nullopt));
}

TEST_F(IntentClientTest, IsToldOfEveryShortcutAsItIs) {
    offer();
    EXPECT_EQ(asked([&] { return client_->listShortcuts(); }), OfferedIntents::shortcuts());
}

TEST_F(IntentClientTest, SaysThatNobodyRuns) {
    EXPECT_EQ(complaint(), "Orvanta does not run in this session");
}

TEST_F(IntentClientTest, SaysThatThereIsNoBus) {
    client_.emplace(QDBusConnection(QStringLiteral("no such bus")), kOfferedName);
    EXPECT_EQ(complaint(), "there is no session bus to find Orvanta on");
}

TEST_F(IntentClientTest, SaysWhyItIsRefused) {
    // Has the name, and no intents.
    ASSERT_TRUE((*own_)->registerService(kOfferedName));
    EXPECT_THAT(complaint(), testing::StartsWith("Orvanta refuses: "));
}

} // namespace
} // namespace orvanta::test
