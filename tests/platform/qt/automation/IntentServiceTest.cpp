#include "platform/qt/automation/IntentService.h"

#include "tests/platform/qt/automation/OfferedIntents.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <limits>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const QString kName = QStringLiteral("com.meridane.orvanta");
const QString kPath = QStringLiteral("/com/meridane/orvanta");
const QString kInterface = QStringLiteral("com.meridane.orvanta.Intents");

class IntentServiceTest : public testing::Test {
protected:
    IntentServiceTest() {
        startQt();
        bus_.emplace();
        own_.emplace(*bus_);
        other_.emplace(*bus_);
        service_.emplace(**own_, kName, log_, offered_.intents());
    }

    /// What somebody else on the bus is answered.
    QDBusMessage ask(const QString& method, const QVariantList& arguments = {},
                     const QString& interface = kInterface, const QString& path = kPath) {
        QDBusMessage question = QDBusMessage::createMethodCall(kName, path, interface, method);
        question.setArguments(arguments);
        const QDBusPendingCall answer = (*other_)->asyncCall(question);
        EXPECT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return answer.isFinished(); }));
        return answer.reply();
    }

    /// The line that the intent answers with; the error's name where there is none.
    std::string line(const QString& method, const QVariantList& arguments = {},
                     const QString& interface = kInterface) {
        const QDBusMessage answer = ask(method, arguments, interface);
        if (answer.type() == QDBusMessage::ErrorMessage)
            return answer.errorName().toStdString();
        EXPECT_EQ(answer.signature(), "s");
        return answer.arguments().value(0).toString().toStdString();
    }

    std::optional<PrivateBus> bus_;
    std::optional<BusConnection> own_;
    std::optional<BusConnection> other_;
    RecordingLog log_;
    OfferedIntents offered_;
    std::optional<IntentService> service_;
};

TEST_F(IntentServiceTest, AnswersWithTheLineOfTheIntent) {
    EXPECT_EQ(line("SetVolume", {qlonglong(50)}), "Volume set to 50");
    EXPECT_EQ(line("ToggleMute"), "All audio muted");
    EXPECT_EQ(line("ListAudioApps"), "Playing: Müsik, ♫");
    EXPECT_EQ(offered_.mutes, 1);
    EXPECT_THAT(log_.texts(), IsEmpty());
}

TEST_F(IntentServiceTest, HandsOnTheNumberAsItWasGiven) {
    for (const std::int64_t volume :
         {std::int64_t{0}, std::int64_t{-5}, std::int64_t{300},
          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(line("SetVolume", {QVariant::fromValue<qlonglong>(volume)}),
                  "Volume set to " + std::to_string(volume));
}

TEST_F(IntentServiceTest, LeavesItToTheIntentWhatHoldsWithoutANumber) {
    EXPECT_EQ(line("SetVolume"), "Volume set to what holds");
    EXPECT_THAT(offered_.volumes, ElementsAre(std::nullopt));
}

TEST_F(IntentServiceTest, AnswersACallThatNamesNoInterface) {
    EXPECT_EQ(line("ToggleMute", {}, QString()), "All audio muted");
}

TEST_F(IntentServiceTest, RefusesWhatAnIntentDoesNotTake) {
    const std::string invalid = "org.freedesktop.DBus.Error.InvalidArgs";
    EXPECT_EQ(line("SetVolume", {QStringLiteral("50")}), invalid);
    EXPECT_EQ(line("SetVolume", {50.0}), invalid);
    EXPECT_EQ(line("SetVolume", {50}), invalid) << "of 32 bits";
    EXPECT_EQ(line("SetVolume", {qulonglong(50)}), invalid);
    EXPECT_EQ(line("SetVolume", {qlonglong(50), qlonglong(60)}), invalid);
    EXPECT_EQ(line("ToggleMute", {true}), invalid);
    EXPECT_EQ(line("ListAudioApps", {QStringLiteral("all")}), invalid);
    EXPECT_THAT(offered_.volumes, IsEmpty());
    EXPECT_EQ(offered_.mutes, 0);
}

TEST_F(IntentServiceTest, SaysWhatAnIntentTakes) {
    EXPECT_EQ(ask("SetVolume", {QStringLiteral("50")}).errorMessage(),
              "SetVolume takes 'x' or nothing, not 's'");
    EXPECT_EQ(ask("ToggleMute", {true}).errorMessage(), "ToggleMute takes nothing, not 'b'");
}

TEST_F(IntentServiceTest, KnowsNoOtherMembersInterfacesAndObjects) {
    EXPECT_EQ(line("Quit"), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(line("toggleMute"), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_THAT(line("ToggleMute", {}, QStringLiteral("com.meridane.orvanta")),
                StartsWith("org.freedesktop.DBus.Error.Unknown"));
    EXPECT_EQ(ask("Quit").errorMessage(), "There is no method Quit");
    EXPECT_THAT(ask("ToggleMute", {}, kInterface, QStringLiteral("/elsewhere")).errorName(),
                "org.freedesktop.DBus.Error.UnknownObject");
    EXPECT_EQ(offered_.mutes, 0);
    EXPECT_EQ(line("ToggleMute"), "All audio muted") << "it still answers";
}

TEST_F(IntentServiceTest, TellsWhatThereIs) {
    const std::string words =
        ask("Introspect", {}, QStringLiteral("org.freedesktop.DBus.Introspectable"))
            .arguments()
            .value(0)
            .toString()
            .toStdString();
    EXPECT_THAT(words, HasSubstr(R"(<interface name="com.meridane.orvanta.Intents">)"));
    for (const char* const method : {"SetVolume", "ToggleMute", "ListAudioApps", "ListShortcuts"}) {
        EXPECT_THAT(words, HasSubstr("<method name=\"" + std::string(method) + "\">"));
        EXPECT_EQ(ask(method).type(), QDBusMessage::ReplyMessage) << method;
    }
}

TEST_F(IntentServiceTest, AnswersInTheOrderOfTheCalls) {
    std::vector<QDBusPendingCall> answers;
    for (qlonglong volume = 0; volume < 100; ++volume) {
        QDBusMessage question =
            QDBusMessage::createMethodCall(kName, kPath, kInterface, QStringLiteral("SetVolume"));
        question << volume;
        answers.push_back((*other_)->asyncCall(question));
    }
    EXPECT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return answers.back().isFinished(); }));
    ASSERT_EQ(offered_.volumes.size(), 100U);
    for (std::int64_t volume = 0; volume < 100; ++volume)
        EXPECT_EQ(offered_.volumes[static_cast<std::size_t>(volume)], volume);
}

TEST_F(IntentServiceTest, GivesNameAndObjectBackAtItsEnd) {
    service_.reset();
    EXPECT_EQ(line("ToggleMute"), "org.freedesktop.DBus.Error.ServiceUnknown");
    service_.emplace(**own_, kName, log_, offered_.intents());
    EXPECT_EQ(line("ToggleMute"), "All audio muted");
    EXPECT_THAT(log_.texts(), IsEmpty());
}

TEST_F(IntentServiceTest, WaitsForANameThatSomebodyElseHas) {
    OfferedIntents offeredElsewhere;
    IntentService second(**other_, kName, log_, offeredElsewhere.intents());
    ASSERT_EQ(log_.messages().size(), 1U);
    EXPECT_EQ(log_.messages().front().category, "automation");
    EXPECT_EQ(log_.messages().front().level, LogLevel::error);
    EXPECT_THAT(log_.texts().front(), StartsWith("No automation until process "));
    EXPECT_EQ(line("ToggleMute"), "All audio muted");
    EXPECT_EQ(offered_.mutes, 1);
    EXPECT_EQ(offeredElsewhere.mutes, 0);

    service_.reset();
    EXPECT_EQ(line("ToggleMute"), "All audio muted");
    EXPECT_EQ(offeredElsewhere.mutes, 1);
}

TEST_F(IntentServiceTest, SaysThatThereIsNoBus) {
    const IntentService none(QDBusConnection(QStringLiteral("no such bus")), kName, log_,
                             offered_.intents());
    EXPECT_THAT(log_.texts(), ElementsAre("No automation: there is no session bus"));
}

TEST_F(IntentServiceTest, EndsInPeaceAfterItsBus) {
    bus_.reset();
    EXPECT_TRUE(eventuallyInEventLoop(Seconds(20), [&] { return !(*own_)->isConnected(); }));
    service_.reset();
    EXPECT_THAT(log_.texts(), IsEmpty());
}

} // namespace
} // namespace orvanta::test
