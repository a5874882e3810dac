#include "tests/app/pictures/ControlStates.h"

#include <QPainter>
#include <QtTest>
#include <utility>

namespace orvanta::test {
namespace {

/// Where nothing of a sheet is.
constexpr QPoint kAside{1, 1};

QPoint middleOf(const QQuickItem& item) {
    return item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
}

QList<const QQuickItem*> placesCalled(const QString& prefix, const QQuickItem& below) {
    QList<const QQuickItem*> places;
    for (const QQuickItem* const item : below.childItems()) {
        if (item->objectName().startsWith(prefix))
            places.append(item);
        places.append(placesCalled(prefix, *item));
    }
    return places;
}

/// Around a control, with what it casts.
QRect cellOf(const QQuickItem& place, double ratio) {
    const QQuickItem& cell = *place.parentItem();
    const QRectF bounds = cell.mapRectToScene(QRectF{0, 1, cell.width(), cell.height() - 1});
    return QRectF(bounds.topLeft() * ratio, bounds.size() * ratio).toRect();
}

} // namespace

ControlStates::ControlStates(QQuickItem& sheet, std::function<void()> settle)
    : sheet_(sheet), settle_(std::move(settle)) {
    sheet_.setParentItem(window_.contentItem());
    window_.resize(sheet_.size().toSize());
    window_.show();
    window_.requestActivate();
    settle_();
}

QImage ControlStates::picture() {
    QImage picture = window_.grabWindow();
    paint(picture, State::hover, QStringLiteral("hover "));
    paint(picture, State::pressed, QStringLiteral("pressed "));
    paint(picture, State::focus, QStringLiteral("focus "));
    return picture;
}

void ControlStates::paint(QImage& onto, State state, const QString& prefix) {
    for (const QQuickItem* const place : placesCalled(prefix, sheet_)) {
        if (place->childItems().empty())
            continue;
        enter(state, *place->childItems().front());
        settle_();
        const QRect cell = cellOf(*place, window_.effectiveDevicePixelRatio());
        QPainter(&onto).drawImage(cell, window_.grabWindow(), cell);
        leave(state);
    }
}

void ControlStates::enter(State state, QQuickItem& control) {
    if (state == State::focus) {
        control.forceActiveFocus(Qt::TabFocusReason);
        return;
    }
    QTest::mouseMove(&window_, middleOf(control));
    if (state == State::pressed)
        QTest::mousePress(&window_, Qt::LeftButton, {}, middleOf(control));
}

void ControlStates::leave(State state) {
    QTest::mouseMove(&window_, kAside);
    if (state == State::pressed)
        QTest::mouseRelease(&window_, Qt::LeftButton, {}, kAside);
    settle_();
}

} // namespace orvanta::test
