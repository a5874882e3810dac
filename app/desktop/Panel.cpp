#include "app/desktop/Panel.h"

#include "app/shell/PanelPlace.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace orvanta {
namespace {

constexpr Qt::WindowFlags kDropped = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
constexpr Qt::WindowFlags kPlain = Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;

DesktopRect rectOf(const QRect& rect) {
    return {.x = rect.x(), .y = rect.y(), .width = rect.width(), .height = rect.height()};
}

} // namespace

Panel::Panel(QQuickWindow& window, RunLoop& mainRunLoop,
             std::function<void(bool)> visibilityChanged)
    : window_(window),
      mainRunLoop_(mainRunLoop),
      visibility_(window, std::move(visibilityChanged)) {
    setFlags();
    connect(&window_, &QWindow::activeChanged, this, &Panel::activeChanged);
}

void Panel::setFlags() {
    window_.setFlags(hasTray_ ? kDropped : kPlain);
    window_.setProperty("isFramed", !hasTray_);
}

void Panel::setHasTray(bool hasTray) {
    if (hasTray == hasTray_)
        return;
    hasTray_ = hasTray;
    const bool isShown = window_.isVisible();
    // A window changes its kind only while it is away.
    window_.hide();
    setFlags();
    if (isShown)
        show();
}

void Panel::toggle(const QRect& icon) {
    if (toggle_.isToShow(window_.isVisible(), mainRunLoop_.now()))
        show(icon);
    else
        window_.hide();
}

void Panel::show(const QRect& icon) {
    if (!window_.isVisible() && hasTray_)
        place(icon);
    if (window_.visibility() == QWindow::Minimized)
        window_.showNormal();
    else
        window_.show();
    window_.raise();
    window_.requestActivate();
}

void Panel::giveWay() {
    if (hasTray_)
        window_.hide();
    else
        window_.showMinimized();
}

void Panel::place(const QRect& icon) {
    const QRect rect = icon.isEmpty() ? QRect(QCursor::pos(), QSize()) : icon;
    const QScreen* screen = QGuiApplication::screenAt(rect.center());
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    const DesktopPoint place = panelPlace(rectOf(rect), rectOf(screen->availableGeometry()),
                                          window_.width(), window_.height());
    window_.setPosition(place.x, place.y);
}

void Panel::activeChanged() {
    if (window_.isActive() || !window_.isVisible() || !hasTray_)
        return;
    toggle_.hidden(mainRunLoop_.now());
    window_.hide();
}

} // namespace orvanta
