#include "app/desktop/TrayIcon.h"

#include "app/bridge/Text.h"
#include "app/drawing/Fonts.h"
#include "app/drawing/Symbols.h"

#include <QPainter>
#include <QPixmap>
#include <utility>

namespace orvanta {

QIcon paintTrayIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QFont font(kSymbolFamily);
        font.setPixelSize(size - size / 8);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(picture.rect(), Qt::AlignCenter, qText(glyphOf("speaker.wave.2.fill")));
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

TrayIcon::TrayIcon(Actions actions) : actions_(std::move(actions)), icon_(paintTrayIcon()) {
    menu_.addAction(QStringLiteral("Show Orvanta"),
                    [this] { actions_.togglePanel(icon_.geometry()); });
    menu_.addAction(QStringLiteral("Open Sound Command Center"),
                    [this] { actions_.openConsole(); });
    menu_.addSeparator();
    menu_.addAction(QStringLiteral("Quit Orvanta"), [this] { actions_.quit(); });
    icon_.setToolTip(QStringLiteral("Orvanta"));
    icon_.setContextMenu(&menu_);
    connect(&icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason why) {
                if (why == QSystemTrayIcon::Trigger || why == QSystemTrayIcon::DoubleClick)
                    actions_.togglePanel(icon_.geometry());
            });
    icon_.show();
}

} // namespace orvanta
