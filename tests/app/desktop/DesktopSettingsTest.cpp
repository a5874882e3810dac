#include "app/desktop/DesktopSettings.h"

#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/PrivateBus.h"

#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace orvanta::test {
namespace {

constexpr Seconds kPatience{20.0};
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kInterface = QStringLiteral("org.gnome.desktop.interface");

/// A desktop's settings, which knows what a test tells it and refuses the rest.
class FakeSettingsPortal final : public QDBusVirtualObject {
public:
    explicit FakeSettingsPortal(const PrivateBus& bus) : connection_(bus) {
        if (!connection_->registerVirtualObject(kPath, this) ||
            !connection_->registerService(QStringLiteral("org.freedesktop.portal.Desktop")))
            throw std::runtime_error("the bus has a portal already");
    }

    std::map<std::pair<QString, QString>, QVariant> values;
    int questions = 0;

    void change(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(kPath, kSettings, QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        connection_->send(signal);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QLatin1String("Read"))
            return false;
        ++questions;
        const auto found = values.find(
            {message.arguments().value(0).toString(), message.arguments().value(1).toString()});
        // As the portal does it: a variant within a variant.
        connection.send(found == values.end()
                            ? message.createErrorReply(QDBusError::UnknownProperty, "not known")
                            : message.createReply(QVariant::fromValue(
                                  QDBusVariant(QVariant::fromValue(QDBusVariant(found->second))))));
        return true;
    }

private:
    BusConnection connection_;
};

class ADesktopsSettings : public testing::Test {
protected:
    void read() {
        settings_ = std::make_unique<DesktopSettings>(
            *ours_, [this](const DesktopLook& look) { looks_.push_back(look); });
    }

    /// From now on the bus hands over what the portal tells: it has handed over the questions,
    /// which were asked after that was ordered.
    void readFrom(const FakeSettingsPortal& portal) {
        read();
        EXPECT_TRUE(eventuallyInEventLoop(kPatience, [&] { return portal.questions == 2; }));
    }

    [[nodiscard]] bool becomes(const DesktopLook& look) {
        return eventuallyInEventLoop(kPatience, [&] { return looks_.back() == look; });
    }

    PrivateBus bus_;
    BusConnection ours_{bus_};
    std::vector<DesktopLook> looks_;
    std::unique_ptr<DesktopSettings> settings_;
};

TEST_F(ADesktopsSettings, AskNothingOfWindowsWhereThereIsNoPortal) {
    read();
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_EQ(looks_, std::vector{DesktopLook{}});
}

TEST_F(ADesktopsSettings, AreReadAtTheStart) {
    FakeSettingsPortal portal(bus_);
    portal.values[{kAppearance, QStringLiteral("contrast")}] = 1U;
    portal.values[{kInterface, QStringLiteral("enable-animations")}] = false;
    read();
    EXPECT_TRUE(becomes({.isHighContrast = true, .isMotionReduced = true}));
}

TEST_F(ADesktopsSettings, AreAskedOnceAndLeftAloneWhereTheyAreNotKnown) {
    FakeSettingsPortal portal(bus_);
    readFrom(portal);
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_EQ(looks_, std::vector{DesktopLook{}});
}

TEST_F(ADesktopsSettings, AreFollowed) {
    FakeSettingsPortal portal(bus_);
    readFrom(portal);
    portal.change(kAppearance, QStringLiteral("contrast"), 1U);
    EXPECT_TRUE(becomes({.isHighContrast = true}));
    portal.change(kInterface, QStringLiteral("enable-animations"), false);
    EXPECT_TRUE(becomes({.isHighContrast = true, .isMotionReduced = true}));
    portal.change(kAppearance, QStringLiteral("contrast"), 0U);
    portal.change(kInterface, QStringLiteral("enable-animations"), true);
    EXPECT_TRUE(becomes({}));
}

TEST_F(ADesktopsSettings, SayNothingOfWhatWindowsDoNotShow) {
    FakeSettingsPortal portal(bus_);
    readFrom(portal);
    portal.change(kAppearance, QStringLiteral("accent-color"), 1U);
    portal.change(kInterface, QStringLiteral("contrast"), 1U);
    portal.change(kAppearance, QStringLiteral("contrast"), 0U);
    portal.change(kAppearance, QStringLiteral("contrast"), 1U);
    EXPECT_TRUE(becomes({.isHighContrast = true}));
    EXPECT_EQ(looks_.size(), 2U);
}

TEST_F(ADesktopsSettings, FindNoCompositorWithoutAScreen) {
    read();
    settings_->lookForCompositor();
    EXPECT_EQ(looks_, std::vector{DesktopLook{}});
}

} // namespace
} // namespace orvanta::test
