#include "tests/app/support/ViewTest.h"

#include "app/bridge/Text.h"
#include "app/drawing/Symbols.h"

#include <QCoreApplication>
#include <QTest>
#include <algorithm>
#include <array>
#include <stdexcept>

namespace orvanta::test {
namespace {

constexpr std::array kUsable{QAccessible::Button, QAccessible::ButtonMenu,  QAccessible::CheckBox,
                             QAccessible::Slider, QAccessible::RadioButton, QAccessible::MenuItem};

void collectSeen(QAccessibleInterface& interface, std::vector<QAccessibleInterface*>& seen) {
    for (int index = 0; index < interface.childCount(); ++index) {
        QAccessibleInterface* const child = interface.child(index);
        if (child == nullptr || child->state().invisible)
            continue;
        seen.push_back(child);
        collectSeen(*child, seen);
    }
}

void collect(QQuickItem& item, std::vector<QQuickItem*>& items) {
    if (!item.isVisible())
        return;
    items.push_back(&item);
    for (QQuickItem* const child : item.childItems())
        collect(*child, items);
}

} // namespace

ViewTest::ViewTest() {
    window->setColor(Qt::black);
}

ViewTest::~ViewTest() {
    // While its window can still give back what it was drawn with.
    view.reset();
}

void ViewTest::show(const QString& file, const QVariantMap& properties) {
    settle();
    view = make(file, properties);
    if (auto* const whole = qobject_cast<QQuickWindow*>(view.get())) {
        window = whole;
        root = whole->contentItem();
    } else {
        root = &dynamic_cast<QQuickItem&>(*view);
        root->setParentItem(window->contentItem());
        root->setSize({root->implicitWidth(), root->implicitHeight()});
        window->resize(root->size().toSize());
    }
    window->show();
    window->requestActivate();
    if (!QTest::qWaitForWindowActive(window))
        throw std::runtime_error("the window does not become active");
    if (window == &ownWindow_)
        root->forceActiveFocus();
    settleView();
}

void ViewTest::settleView() {
    // A change may lead to a layout, and that to another change.
    for (int turn = 0; turn < 3; ++turn) {
        settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        // Lays out what is asked to.
        if (window->isVisible())
            (void)window->grabWindow();
        QCoreApplication::processEvents();
    }
}

std::vector<QQuickItem*> ViewTest::visibleItems() const {
    std::vector<QQuickItem*> items;
    collect(*window->contentItem(), items);
    return items;
}

QQuickItem* ViewTest::control(const QString& name) const {
    for (QQuickItem* const item : visibleItems())
        if (std::ranges::find(kUsable, roleOf(*item)) != kUsable.end() && nameOf(*item) == name)
            return item;
    return nullptr;
}

QQuickItem& ViewTest::the(const QString& name) const {
    QQuickItem* const item = control(name);
    if (item == nullptr)
        throw std::runtime_error("there is no \"" + name.toStdString() + "\" to use");
    return *item;
}

bool ViewTest::says(const QString& text) const {
    return std::ranges::any_of(visibleItems(), [&](QQuickItem* item) {
        return item->inherits("QQuickText") && item->property("text").toString() == text &&
               item->width() > 0;
    });
}

bool ViewTest::showsSymbol(const QString& name) const {
    return says(qText(glyphOf(name.toStdString())));
}

std::vector<QAccessibleInterface*> ViewTest::seenByTools() const {
    std::vector<QAccessibleInterface*> seen;
    if (QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(window))
        collectSeen(*whole, seen);
    return seen;
}

QString ViewTest::nameOf(QQuickItem& item) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? QString() : interface->text(QAccessible::Name);
}

QString ViewTest::descriptionOf(QQuickItem& item) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? QString() : interface->text(QAccessible::Description);
}

QAccessible::Role ViewTest::roleOf(QQuickItem& item) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&item);
    return interface == nullptr ? QAccessible::NoRole : interface->role();
}

bool ViewTest::isChecked(QQuickItem& item) {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&item);
    return interface != nullptr && interface->state().checked;
}

QPoint ViewTest::middleOf(QQuickItem& item) {
    return placeOn(item, 0.5);
}

QPoint ViewTest::placeOn(QQuickItem& item, double shareOfWidth) {
    return item.mapToScene({shareOfWidth * item.width(), item.height() / 2}).toPoint();
}

QQuickItem* ViewTest::appList() const {
    return root->findChild<QQuickItem*>("apps");
}

void ViewTest::reveal(QQuickItem& item) {
    QQuickItem* const apps = appList();
    if (apps == nullptr || !apps->isAncestorOf(&item))
        return;
    const double top = item.mapToItem(apps, QPointF()).y();
    const double bottom = top + item.height();
    double by = 0.0;
    if (top < 0.0)
        by = top;
    else if (bottom > apps->height())
        by = bottom - apps->height();
    if (by == 0.0)
        return;
    apps->setProperty("contentY", apps->property("contentY").toDouble() + by);
    settleView();
}

void ViewTest::click(const QString& name) {
    reveal(the(name));
    const QPoint place = middleOf(the(name));
    press(place);
    release(place);
}

void ViewTest::press(const QPoint& place) {
    QTest::mousePress(window, Qt::LeftButton, {}, place);
    settleView();
}

void ViewTest::move(const QPoint& place) {
    QTest::mouseMove(window, place);
    settleView();
}

void ViewTest::release(const QPoint& place) {
    QTest::mouseRelease(window, Qt::LeftButton, {}, place);
    settleView();
}

void ViewTest::key(Qt::Key key) {
    QTest::keyClick(window, key);
    settleView();
}

void ViewTest::expectUpdatesAreLookedForWhereTheyCanBe() {
    EXPECT_TRUE(says("Check for Updates"));
    EXPECT_FALSE(the("Check for updates").isEnabled());
    click("Check for updates");
    EXPECT_EQ(updateChecks, 0);
    shell->setCanCheckForUpdates(true);
    settleView();
    click("Check for updates");
    EXPECT_EQ(updateChecks, 1);
}

} // namespace orvanta::test
