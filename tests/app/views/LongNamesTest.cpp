// Names as long as people and makers of devices give them, in either direction.

#include "tests/app/views/PanelTest.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvanta::test {
namespace {

struct Name {
    const char* tag;
    QString text;
};

Name eightyCharacters() {
    return {"EightyCharacters",
            QString("Digital Stereo Output of a Very Long Named Interface ").repeated(2).left(80)};
}

Name withoutASpace() {
    return {"WithoutASpace", QString("Lautsprecherausgang").repeated(5).left(80)};
}

Name fromRightToLeft() {
    return {"FromRightToLeft",
            QString::fromUtf8("مكبرات الصوت في غرفة المعيشة ").repeated(4).left(80).trimmed()};
}

class LongNames : public PanelTest, public testing::WithParamInterface<Name> {
protected:
    [[nodiscard]] static const QString& longName() { return GetParam().text; }

    [[nodiscard]] static std::string longNameInBytes() { return longName().toStdString(); }

    /// The text in a control that shows this.
    [[nodiscard]] static QQuickItem* textOf(const QQuickItem& control, const QString& text) {
        for (QQuickItem* const child : control.childItems()) {
            if (child->inherits("QQuickText") && child->property("text").toString() == text)
                return child;
            if (QQuickItem* const found = textOf(*child, text))
                return found;
        }
        return nullptr;
    }

    /// What a tip of the control says as soon as the pointer has rested; nothing where it is not
    /// asked to.
    [[nodiscard]] QString tipOf(QQuickItem& item) {
        move({1, 1});
        move(middleOf(item));
        for (const QObject* const child : item.children())
            if (child->property("isAsked").toBool())
                return child->property("text").toString();
        return {};
    }

    [[nodiscard]] QQuickItem& longNameInItsRow() const {
        for (QQuickItem* const item : visibleItems())
            if (item->property("text").toString() == longName())
                return *item;
        throw std::runtime_error("no row has the name");
    }

    void expectIsElided(const QQuickItem& control) {
        const QQuickItem* const text = textOf(control, longName());
        ASSERT_NE(text, nullptr);
        EXPECT_TRUE(text->property("truncated").toBool());
        EXPECT_EQ(text->property("effectiveHorizontalAlignment").toInt(), Qt::AlignLeft);
        const QRectF place = text->mapRectToItem(&control, text->boundingRect());
        EXPECT_GE(place.left(), 0.0);
        EXPECT_LE(place.right(), control.width());
    }

    void expectIsInTheWindow(QQuickItem& item) {
        const QRectF place = item.mapRectToScene(item.boundingRect());
        EXPECT_GE(place.left(), 0.0) << nameOf(item).toStdString();
        EXPECT_LE(place.right(), window->width()) << nameOf(item).toStdString();
    }
};

TEST_P(LongNames, OfADeviceAreElidedInItsMenuAndToldByATip) {
    addDevice("long", longNameInBytes());
    addDevice("short", "Radio");
    showTapped(10, "Vinyl");
    click("Output device for Vinyl");
    QQuickItem& entry = the(longName());
    expectIsElided(entry);
    expectIsInTheWindow(entry);
    EXPECT_LT(entry.width(), window->width());
    EXPECT_EQ(tipOf(entry), longName());
    EXPECT_EQ(tipOf(the("Radio")), "");
    EXPECT_EQ(textOf(the("Radio"), "Radio")->property("truncated"), false);
}

TEST_P(LongNames, OfTheChosenDeviceAreElidedOnTheButtonAndToldByATip) {
    addDevice("long", longNameInBytes());
    showTapped(10, "Vinyl");
    QQuickItem& button = the("Output device for Vinyl");
    EXPECT_EQ(tipOf(button), "");
    click("Output device for Vinyl");
    click(longName());
    EXPECT_EQ(model->outputDeviceUID(10), "long");
    expectIsElided(the("Output device for Vinyl"));
    EXPECT_EQ(descriptionOf(button), longName());
    EXPECT_EQ(tipOf(button), longName());
}

TEST_P(LongNames, OfAProgramAreElidedAndToldByATip) {
    showTapped(10, longNameInBytes());
    QQuickItem& name = longNameInItsRow();
    EXPECT_TRUE(name.property("truncated").toBool());
    EXPECT_EQ(nameOf(name), longName());
    EXPECT_EQ(tipOf(name), longName());
    const QQuickItem& record = the("Record " + longName() + " audio");
    EXPECT_LE(name.mapRectToScene(name.boundingRect()).right(), record.mapToScene({}).x());
}

TEST_P(LongNames, StandInATipThatStaysInTheWindow) {
    showTapped(10, longNameInBytes());
    QQuickItem& name = longNameInItsRow();
    for (QObject* const child : name.children())
        if (child->property("isAsked").isValid())
            child->setProperty("delay", 0);
    EXPECT_EQ(tipOf(name), longName());
    settleView();
    const auto all = visibleItems();
    const auto shown = std::ranges::count_if(all, [&](QQuickItem* item) {
        const bool isTip = item != &name && item->inherits("QQuickText") &&
                           item->property("text").toString() == longName();
        if (isTip)
            expectIsInTheWindow(*item);
        return isTip;
    });
    EXPECT_EQ(shown, 1);
}

INSTANTIATE_TEST_SUITE_P(All, LongNames,
                         testing::Values(eightyCharacters(), withoutASpace(), fromRightToLeft()),
                         [](const testing::TestParamInfo<Name>& info) {
                             return std::string(info.param.tag);
                         });

} // namespace
} // namespace orvanta::test
