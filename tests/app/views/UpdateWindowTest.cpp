#include "app/bridge/UpdateBridge.h"
#include "tests/app/support/ViewTest.h"
#include "tests/app/update/support/ScriptedFetcher.h"
#include "tests/support/RecordingFileViewer.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/RecordingURLOpener.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::Contains;

class UpdateWindow : public ViewTest {
protected:
    ~UpdateWindow() override {
        // Before what it shows.
        view.reset();
    }

    void showSaying(const std::string& sentence) {
        updater_.news.set({.kind = UpdateNews::Kind::failed, .sentence = sentence});
        show("shell/UpdateWindow.qml", {{"updates", QVariant::fromValue(&updates_)}});
    }

    [[nodiscard]] static std::string ofWords(int count) {
        std::string sentence = "It could not be found out whether there is a newer version:";
        for (int word = 0; word < count; ++word)
            sentence += " because";
        return sentence + " at last.";
    }

    [[nodiscard]] QQuickItem& words() const { return *view->findChild<QQuickItem*>("words"); }

    [[nodiscard]] bool isScrolled() const { return words().property("isScrolled").toBool(); }

    [[nodiscard]] double scrolledBy() const { return words().property("scrolledBy").toDouble(); }

    /// No word stands on a button, or outside of the window.
    void expectAllFits() {
        const double bottom = words().mapToScene({0, words().height()}).y();
        EXPECT_LE(bottom, the("Close").mapToScene({}).y() - 1) << window->height();
        EXPECT_LE(the("Close").mapToScene({0, the("Close").height()}).y(), window->height());
        if (!isScrolled()) {
            EXPECT_GE(words().height(), words().property("textHeight").toDouble());
        }
    }

private:
    ScriptedFetcher fetcher_;
    RecordingFileViewer viewer_;
    RecordingURLOpener opener_;
    RecordingLog log_;
    SoftwareUpdater updater_{{}, {fetcher_, runLoop, viewer_, opener_, log_}};
    UpdateBridge updates_{updater_};
};

TEST_F(UpdateWindow, KeepsItsSizeForAFewWords) {
    showSaying("Orvanta 1.0.0 is the newest version.");
    EXPECT_EQ(window->size(), QSize(400, 168));
    EXPECT_FALSE(isScrolled());
    EXPECT_FALSE(words().activeFocusOnTab());
    expectAllFits();
}

TEST_F(UpdateWindow, GrowsWithItsWords) {
    showSaying(ofWords(60));
    EXPECT_GT(window->height(), 168);
    EXPECT_FALSE(isScrolled());
    expectAllFits();
}

TEST_F(UpdateWindow, ScrollsWhatIsMoreThanAWindowShouldHold) {
    showSaying(ofWords(600));
    EXPECT_LT(window->height(), 400);
    ASSERT_TRUE(isScrolled());
    expectAllFits();
    EXPECT_EQ(nameOf(words()).toStdString(), ofWords(600));
}

TEST_F(UpdateWindow, ScrollsByKey) {
    showSaying(ofWords(600));
    words().forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(words().property("visualFocus").toBool());
    key(Qt::Key_Up);
    EXPECT_EQ(scrolledBy(), 0.0);
    key(Qt::Key_Down);
    const double line = scrolledBy();
    EXPECT_GT(line, 0.0);
    key(Qt::Key_PageDown);
    EXPECT_GT(scrolledBy(), 2 * line);
    key(Qt::Key_End);
    EXPECT_EQ(scrolledBy(), words().property("textHeight").toDouble() - words().height());
    key(Qt::Key_Home);
    EXPECT_EQ(scrolledBy(), 0.0);
}

TEST_F(UpdateWindow, LetsTabReachWordsThatScrollAndNoOthers) {
    const auto stops = [this] {
        std::vector<QString> names;
        the("Close").forceActiveFocus(Qt::TabFocusReason);
        for (int count = 0; count < 4; ++count) {
            names.push_back(nameOf(*window->activeFocusItem()));
            key(Qt::Key_Tab);
        }
        return names;
    };
    showSaying(ofWords(600));
    EXPECT_THAT(stops(), Contains(QString::fromStdString(ofWords(600))));
    view.reset();
    showSaying(ofWords(6));
    EXPECT_THAT(stops(), testing::Not(Contains(QString::fromStdString(ofWords(6)))));
}

} // namespace
} // namespace orvanta::test
