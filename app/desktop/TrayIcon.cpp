#include "app/desktop/TrayIcon.h"

#include "app/bridge/Text.h"
#include "app/drawing/Fonts.h"
#include "app/drawing/Symbols.h"

#include <QPainter>
#include <QPixmap>
#include <utility>

namespace orvanta {

namespace {

/// White, with a trace of shade round it for trays that are white themselves.
void paintSymbol(QPainter& painter, const QRect& square) {
    const QString symbol = qText(glyphOf("speaker.wave.2.fill"));
    painter.setPen(QColor(0, 0, 0, 70));
    for (const QPoint offset : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)})
        painter.drawText(square.translated(offset), Qt::AlignCenter, symbol);
    painter.setPen(Qt::white);
    painter.drawText(square, Qt::AlignCenter, symbol);
}

} // namespace

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
        paintSymbol(painter, picture.rect());
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

TrayIcon::TrayIcon(Actions actions) : actions_(std::move(actions)), icon_(paintTrayIcon()) {
    menu_.addAction(QStringLiteral("Show Orvanta"), [this] { actions_.showPanel(); });
    menu_.addAction(QStringLiteral("Open Sound Command Center"),
                    [this] { actions_.openConsole(); });
    menu_.addSeparator();
    menu_.addAction(QStringLiteral("Quit Orvanta"), [this] { actions_.quit(); });
    icon_.setToolTip(QStringLiteral("Orvanta"));
    icon_.setContextMenu(&menu_);
    connect(&icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason why) {
                // The second of two quick clicks comes as a double one alone.
                if (why == QSystemTrayIcon::Trigger || why == QSystemTrayIcon::DoubleClick)
                    actions_.togglePanel(icon_.geometry());
            });
    icon_.show();
}

} // namespace orvanta
