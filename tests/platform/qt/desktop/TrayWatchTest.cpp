#include "platform/qt/desktop/TrayWatch.h"

#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/FakeTray.h"
#include "tests/platform/qt/support/PrivateBus.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/VirtualDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

constexpr Seconds kTrayBound{30.0};

class TrayWatchTest : public testing::Test {
protected:
    TrayWatchTest() { startQt(); }

    void watch(const DesktopSession& session, const QDBusConnection& bus) {
        watch_ = std::make_unique<TrayWatch>(session, bus,
                                             [this](bool isThere) { told_.push_back(isThere); });
    }

    /// Runs the event loop until so much has been told; false when it is not for long, or more is.
    [[nodiscard]] bool tells(const std::vector<bool>& all) {
        return eventuallyInEventLoop(kTrayBound, [&] { return told_.size() >= all.size(); }) &&
               eventLoopComesToRest() && told_ == all;
    }

    std::vector<bool> told_;
    std::unique_ptr<TrayWatch> watch_;
};

class ATrayOnTheBus : public TrayWatchTest {
protected:
    void watchBus() { watch({}, *own_); }

    void begin(bool hasHost) { tray_.emplace(bus_, hasHost); }

    PrivateBus bus_;
    BusConnection own_{bus_};
    std::optional<FakeTray> tray_;
};

TEST_F(ATrayOnTheBus, IsThereWhenSomebodyDrawsIcons) {
    begin(true);
    watchBus();
    EXPECT_EQ(watch_->isThere(), std::nullopt) << "the bus has not been waited for";
    EXPECT_TRUE(tells({true}));
    EXPECT_EQ(watch_->isThere(), true);
}

TEST_F(ATrayOnTheBus, IsNotThereWhileNobodyDrawsIcons) {
    begin(false);
    watchBus();
    EXPECT_TRUE(tells({false}));
    tray_->setHost(true);
    EXPECT_TRUE(tells({false, true}));
    tray_->setHost(false);
    EXPECT_TRUE(tells({false, true, false}));
    EXPECT_EQ(watch_->isThere(), false);
}

TEST_F(ATrayOnTheBus, ComesAndGoesWithItsName) {
    watchBus();
    EXPECT_TRUE(tells({false}));
    begin(true);
    EXPECT_TRUE(tells({false, true}));
    tray_.reset();
    EXPECT_TRUE(tells({false, true, false}));
    begin(true);
    EXPECT_TRUE(tells({false, true, false, true}));
}

TEST_F(ATrayOnTheBus, IsToldOnceHoweverOftenItIsAnnounced) {
    begin(true);
    watchBus();
    EXPECT_TRUE(tells({true}));
    tray_->setHost(true);
    tray_->setHost(true);
    EXPECT_TRUE(tells({true}));
}

TEST_F(ATrayOnTheBus, IsJudgedByTheAnswerToTheLastQuestion) {
    begin(false);
    tray_->isSlow = true;
    watchBus();
    ASSERT_TRUE(eventuallyInEventLoop(kTrayBound, [&] { return tray_->waitingQuestions() == 1; }));
    tray_->setHost(true);
    ASSERT_TRUE(eventuallyInEventLoop(kTrayBound, [&] { return tray_->waitingQuestions() == 2; }));
    EXPECT_THAT(told_, ElementsAre());
    tray_->answer();
    EXPECT_TRUE(tells({true}));
}

TEST_F(ATrayOnTheBus, GoesWithTheBus) {
    std::optional<PrivateBus> mortal(std::in_place);
    BusConnection connection(*mortal);
    std::optional<FakeTray> tray(std::in_place, *mortal, true);
    watch({}, *connection);
    EXPECT_TRUE(tells({true}));
    mortal.reset();
    EXPECT_TRUE(tells({true, false}));
}

TEST_F(ATrayOnTheBus, IsNotToldOfAfterTheWatchsEnd) {
    begin(true);
    watchBus();
    watch_.reset();
    EXPECT_TRUE(tells({}));
}

TEST_F(TrayWatchTest, TellsThatThereIsNoneWithoutABusAndADisplay) {
    for (const char* const display : {"", ":987654"}) {
        told_.clear();
        watch({.display = display}, QDBusConnection(QStringLiteral("no such bus")));
        EXPECT_TRUE(tells({false})) << display;
    }
}

class ATrayOnADisplay : public TrayWatchTest {
protected:
    void watchDisplay() {
        watch({.display = display_.name()}, QDBusConnection(QStringLiteral("no such bus")));
    }

    void begin() {
        tray_ = std::make_unique<ChildProcess>(ChildProcess::Launch{
            .command = {"env", "DISPLAY=" + display_.name(), "NO_AT_BRIDGE=1", "trayer"}});
    }

    VirtualDisplay display_;
    std::unique_ptr<ChildProcess> tray_;
};

TEST_F(ATrayOnADisplay, ComesAndGoes) {
    watchDisplay();
    EXPECT_TRUE(tells({false}));
    begin();
    EXPECT_TRUE(tells({false, true}));
    tray_->kill();
    EXPECT_TRUE(tells({false, true, false}));
    begin();
    EXPECT_TRUE(tells({false, true, false, true}));
}

TEST_F(ATrayOnADisplay, IsToldWhenItWasThereBefore) {
    watchDisplay();
    begin();
    ASSERT_TRUE(eventuallyInEventLoop(kTrayBound, [&] { return watch_->isThere() == true; }));
    told_.clear();
    watchDisplay();
    EXPECT_TRUE(tells({true}));
}

TEST_F(ATrayOnADisplay, IsEnoughWithoutOneOnTheBusAndTheOtherWayRound) {
    const PrivateBus bus;
    BusConnection own(bus);
    watch({.display = display_.name()}, *own);
    EXPECT_TRUE(tells({false}));
    begin();
    EXPECT_TRUE(tells({false, true}));
    std::optional<FakeTray> other(std::in_place, bus, true);
    EXPECT_TRUE(tells({false, true}));
    tray_->kill();
    EXPECT_TRUE(tells({false, true})) << "one is left";
    other.reset();
    EXPECT_TRUE(tells({false, true, false}));
}

TEST_F(ATrayOnADisplay, IsNoneUnderWayland) {
    watchDisplay();
    begin();
    ASSERT_TRUE(eventuallyInEventLoop(kTrayBound, [&] { return watch_->isThere() == true; }));
    told_.clear();
    watch({.waylandDisplay = "wayland-0", .display = display_.name()},
          QDBusConnection(QStringLiteral("no such bus")));
    EXPECT_TRUE(tells({false}));
}

TEST_F(ATrayOnADisplay, GoesQuietlyWithTheDisplay) {
    watchDisplay();
    begin();
    ASSERT_TRUE(eventuallyInEventLoop(kTrayBound, [&] { return watch_->isThere() == true; }));
    display_.kill();
    EXPECT_TRUE(eventuallyInEventLoop(kTrayBound, [&] { return watch_->isThere() == false; }));
    EXPECT_TRUE(eventLoopComesToRest());
}

} // namespace
} // namespace orvanta::test
