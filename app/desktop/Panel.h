#pragma once

#include "app/desktop/WindowVisibility.h"
#include "app/shell/PanelToggle.h"
#include "core/platform/RunLoop.h"

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QRect>
#include <functional>

namespace orvanta {

/// The panel's window. With a tray it drops from its icon and goes when the user turns to something
/// else; without one it is a window like others, which stays until it is closed.
class Panel final : public QObject {
public:
    /// `window` is the panel's own; `visibilityChanged` is told whether it can be seen. What is
    /// referred to must outlive it.
    Panel(QQuickWindow& window, RunLoop& mainRunLoop,
          std::function<void(bool isVisible)> visibilityChanged);

    /// A panel that is open stays so, as the other kind of window.
    void setHasTray(bool hasTray);

    /// Where the icon is; empty where the desktop does not tell, which means the pointer.
    void toggle(const QRect& icon);
    void show(const QRect& icon = {});
    /// Without a tray only minimised: somewhere it must be found again.
    void giveWay();

private:
    void setFlags();
    void place(const QRect& icon);
    void activeChanged();

    QQuickWindow& window_;
    RunLoop& mainRunLoop_;
    WindowVisibility visibility_;
    PanelToggle toggle_;
    bool hasTray_ = false;
};

} // namespace orvanta
