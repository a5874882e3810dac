#include "platform/qt/automation/IntentClient.h"

#include "tests/platform/qt/automation/OfferedIntents.h"
#include "tests/platform/qt/support/AskedAside.h"
#include "tests/platform/qt/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusVirtualObject>
#include <future>
#include <stdexcept>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

const QString kOfferedName = QStringLiteral("com.meridane.orvanta");

/// A program that has the name and answers nothing.
class SilentProgram final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& /*message*/,
                       const QDBusConnection& /*connection*/) override {
        isAsked = true;
        return true;
    }

    bool isAsked = false;
};

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

    [[nodiscard]] std::string complaintOfClient() const {
        try {
            return "none, it answers " + client_->toggleMute();
        } catch (const std::runtime_error& failure) {
            return failure.what();
        }
    }

    std::string complaint() {
        return askedAside([this] { return complaintOfClient(); });
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
    EXPECT_EQ(askedAside([&] { return client_->setVolume(-5); }), "Volume set to -5");
    EXPECT_EQ(askedAside([&] { return client_->setVolume(std::nullopt); }),
              "Volume set to what holds");
    EXPECT_EQ(askedAside([&] { return client_->toggleMute(); }), "All audio muted");
    EXPECT_EQ(askedAside([&] { return client_->listAudioApps(); }), "Playing: Müsik, ♫");
    EXPECT_THAT(offered_.volumes, ElementsAre(-5, std::nullopt));
}

TEST_F(IntentClientTest, IsToldOfEveryShortcutAsItIs) {
    offer();
    EXPECT_EQ(askedAside([&] { return client_->listShortcuts(); }), OfferedIntents::shortcuts());
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

TEST_F(IntentClientTest, SaysThatTheProgramDoesNotAnswer) {
    SilentProgram silent;
    ASSERT_TRUE((*own_)->registerVirtualObject(QStringLiteral("/com/meridane/orvanta"), &silent));
    ASSERT_TRUE((*own_)->registerService(kOfferedName));
    auto said = std::async(std::launch::async, [this] { return complaintOfClient(); });
    EXPECT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return silent.isAsked; }));
    // The bus knows at once that no answer will come from who has gone.
    own_.reset();
    EXPECT_EQ(said.get(), "Orvanta does not answer");
}

} // namespace
} // namespace orvanta::test
