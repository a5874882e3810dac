#include "platform/qt/desktop/DesktopFileViewer.h"

#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/PrivateBus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds kAnswerBound{20.0};

/// A file manager that keeps what it is asked to show.
class FakeFileManager final : public QDBusVirtualObject {
public:
    explicit FakeFileManager(const PrivateBus& bus) : connection_(bus) {
        const bool isThere =
            connection_->registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"),
                                               this) &&
            connection_->registerService(QStringLiteral("org.freedesktop.FileManager1"));
        EXPECT_TRUE(isThere);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QLatin1String("ShowItems"))
            return false;
        for (const QString& address : message.arguments().at(0).toStringList())
            shown.push_back(address.toStdString());
        connection.send(refuses ? message.createErrorReply(QDBusError::AccessDenied, "not now")
                                : message.createReply());
        return true;
    }

    /// How it answers when it is asked whether it is there.
    [[nodiscard]] QDBusMessage::MessageType ping(const QDBusConnection& asker) {
        return asker
            .call(QDBusMessage::createMethodCall(connection_->baseService(), QStringLiteral("/"),
                                                 QStringLiteral("org.freedesktop.DBus.Peer"),
                                                 QStringLiteral("Ping")))
            .type();
    }

    std::vector<std::string> shown;
    bool refuses = false;

private:
    BusConnection connection_;
};

class DesktopFileViewerTest : public testing::Test {
protected:
    DesktopFileViewerTest() {
        startQt();
        bus_.emplace();
        own_.emplace(*bus_);
        viewer_.emplace(**own_, opening());
    }

    [[nodiscard]] DesktopFileViewer::OpenAddress opening() {
        return [this](const QString& address) {
            opened_.push_back(address.toStdString());
        };
    }

    bool opensOne() {
        return eventuallyInEventLoop(kAnswerBound, [&] { return !opened_.empty(); });
    }

    std::optional<PrivateBus> bus_;
    std::optional<BusConnection> own_;
    std::vector<std::string> opened_;
    std::optional<DesktopFileViewer> viewer_;
};

TEST_F(DesktopFileViewerTest, ShowsTheFileInTheFileManager) {
    FakeFileManager manager(*bus_);
    viewer_->activateFileViewerSelecting("/music/Orvanta Recordings/Vinyl_1.wav");
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return !manager.shown.empty(); }));
    EXPECT_THAT(manager.shown, ElementsAre("file:///music/Orvanta%20Recordings/Vinyl_1.wav"));
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_THAT(opened_, IsEmpty());
}

TEST_F(DesktopFileViewerTest, NamesAnyFileSoThatItIsFound) {
    FakeFileManager manager(*bus_);
    viewer_->activateFileViewerSelecting("/music/100%_ünï#1?\xFF.wav");
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return !manager.shown.empty(); }));
    EXPECT_THAT(manager.shown, ElementsAre("file:///music/100%25_%C3%BCn%C3%AF%231%3F%FF.wav"));
}

TEST_F(DesktopFileViewerTest, OpensTheFolderWhereNoFileManagerAnswers) {
    viewer_->activateFileViewerSelecting("/music/Recordings/Vinyl_1.wav");
    EXPECT_TRUE(opensOne());
    EXPECT_THAT(opened_, ElementsAre("file:///music/Recordings"));
}

TEST_F(DesktopFileViewerTest, OpensTheFolderWithoutABus) {
    viewer_.emplace(QDBusConnection(QStringLiteral("no such bus")), opening());
    viewer_->activateFileViewerSelecting("/music/Recordings/Vinyl_1.wav");
    EXPECT_TRUE(opensOne());
    EXPECT_THAT(opened_, ElementsAre("file:///music/Recordings"));
}

TEST_F(DesktopFileViewerTest, OpensTheFolderWhereTheFileManagerRefuses) {
    FakeFileManager manager(*bus_);
    manager.refuses = true;
    viewer_->activateFileViewerSelecting("/music/Recordings/Vinyl_1.wav");
    EXPECT_TRUE(opensOne());
    EXPECT_THAT(opened_, ElementsAre("file:///music/Recordings"));
}

TEST_F(DesktopFileViewerTest, OpensNothingAfterItsEnd) {
    // It answers in this thread's event loop, so certainly after the end.
    FakeFileManager manager(*bus_);
    manager.refuses = true;
    viewer_->activateFileViewerSelecting("/music/Recordings/Vinyl_1.wav");
    viewer_.reset();
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return !manager.shown.empty(); }));
    // What it said before is here when this answer is.
    EXPECT_EQ(manager.ping(**own_), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_THAT(opened_, IsEmpty());
}

} // namespace
} // namespace orvanta::test
