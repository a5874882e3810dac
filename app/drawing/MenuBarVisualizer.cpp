#include "app/drawing/MenuBarVisualizer.h"

#include "app/bridge/Text.h"
#include "app/drawing/Symbols.h"
#include "app/popover/MeterLayout.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>

namespace orvanta {
namespace {

/// Left free above and below a bar of full height.
constexpr double kBarMargin = 2.0;
constexpr double kBarWidth = 2.0;
constexpr double kLeastHeight = 2.0;
constexpr int kMenuSymbolSize = 16;

} // namespace

QImage MenuBarVisualizer::nextFrame(float level) {
    if (!isEnabled_ || !VisualizerBars::isAudible(level))
        return idleFrame();
    bars_.follow(level);
    return barsImage();
}

QImage MenuBarVisualizer::idleFrame() {
    bars_.fade();
    return bars_.areDown() ? symbolImage() : barsImage();
}

QImage MenuBarVisualizer::emptyImage() const {
    QImage image((QSizeF(iconSize) * look_.devicePixelRatio).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(look_.devicePixelRatio);
    image.fill(Qt::transparent);
    return image;
}

QImage MenuBarVisualizer::barsImage() const {
    QImage image = emptyImage();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look_.barColor);
    const double column = static_cast<double>(iconSize.width()) / barCount;
    const double bottom = iconSize.height() - kBarMargin;
    double columnStart = 0.0;
    for (const double barHeight : bars_.heights()) {
        const double x =
            onScreenPixel(columnStart + (column - kBarWidth) / 2, look_.devicePixelRatio);
        const double height =
            std::max((iconSize.height() - 2 * kBarMargin) * barHeight, kLeastHeight);
        painter.drawRoundedRect(QRectF(x, bottom - height, kBarWidth, height), kBarWidth / 2,
                                kBarWidth / 2);
        columnStart += column;
    }
    return image;
}

QImage MenuBarVisualizer::symbolImage() const {
    QImage image = emptyImage();
    const QString family = QString::fromUtf8(look_.symbolFamily);
    // Another font would spell the symbol's name out.
    if (!QFontDatabase::hasFamily(family))
        return image;
    image.setText(QStringLiteral("Description"), QStringLiteral("Orvanta"));
    QFont font(family);
    font.setPixelSize(kMenuSymbolSize);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(look_.barColor);
    painter.drawText(QRect(QPoint(), iconSize), Qt::AlignCenter,
                     qText(glyphOf("speaker.wave.2.fill")));
    return image;
}

} // namespace orvanta
