#include "app/desktop/WindowVisibility.h"

#include <QEvent>
#include <utility>

namespace orvanta {

WindowVisibility::WindowVisibility(QWindow& window, std::function<void(bool)> changed)
    : window_(window), changed_(std::move(changed)) {
    window_.installEventFilter(this);
    looking_.setSingleShot(true);
    connect(&looking_, &QTimer::timeout, this, &WindowVisibility::look);
    connect(&window_, &QWindow::visibilityChanged, this, &WindowVisibility::look);
    look();
}

bool WindowVisibility::eventFilter(QObject* watched, QEvent* event) {
    // The window is told of it after us.
    if (event->type() == QEvent::Expose)
        looking_.start(0);
    return QObject::eventFilter(watched, event);
}

void WindowVisibility::look() {
    const bool isVisible =
        window_.isVisible() && window_.isExposed() && window_.visibility() != QWindow::Minimized;
    if (std::exchange(isVisible_, isVisible) != isVisible)
        changed_(isVisible);
}

} // namespace orvanta
