#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <functional>

namespace orvanta {

/// The program's icon in the tray: a click is for the panel, the other button for a short menu,
/// which is all that some trays offer.
class TrayIcon final : public QObject {
public:
    struct Actions {
        /// `icon` is where it is; empty where the desktop does not tell.
        std::function<void(const QRect& icon)> togglePanel;
        std::function<void()> showPanel;
        std::function<void()> openConsole;
        std::function<void()> quit;
    };

    /// To be made once there is a tray.
    explicit TrayIcon(Actions actions);

    [[nodiscard]] QRect geometry() const { return icon_.geometry(); }

private:
    const Actions actions_;
    QMenu menu_;
    QSystemTrayIcon icon_;
};

/// The symbol in white, in the sizes that trays ask for. Needs the fonts.
[[nodiscard]] QIcon paintTrayIcon();

} // namespace orvanta
