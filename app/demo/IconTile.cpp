#include "app/demo/IconTile.h"

#include "app/drawing/Fonts.h"
#include "app/drawing/Symbols.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace orvanta::demo {
namespace {

// In parts of the tile's side.
constexpr double kCornerRadius = 0.23;
constexpr double kSymbolSize = 0.58;
constexpr double kShadowDrop = 0.02;

QPainterPath outline(double side, double dropped) {
    QPainterPath path;
    path.addRoundedRect(QRectF(0, dropped, side, side), kCornerRadius * side, kCornerRadius * side);
    return path;
}

QLinearGradient surface(const IconTile& tile, double side) {
    // Light comes from above and a little from the left.
    QLinearGradient gradient(0.3 * side, 0, 0.7 * side, side);
    gradient.setColorAt(0, tile.top);
    gradient.setColorAt(1, tile.bottom);
    return gradient;
}

/// The outline of the symbol, which is placed by what is seen of it: a font's own margins differ
/// from glyph to glyph.
QPainterPath shapeOf(const IconTile& tile, double side) {
    QFont font(kSymbolFamily);
    font.setPixelSize(qRound(kSymbolSize * side));
    font.setHintingPreference(QFont::PreferNoHinting);
    const auto glyph = glyphOf(tile.symbol);
    QPainterPath shape;
    shape.addText(0, 0, font,
                  QString::fromLatin1(glyph.data(), static_cast<qsizetype>(glyph.size())));
    const QPointF middle = shape.boundingRect().center();
    shape.translate(side / 2 - middle.x(), side / 2 - middle.y());
    return shape;
}

} // namespace

QImage paintTile(const IconTile& tile, int pixels) {
    loadFonts();
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = pixels;
    painter.fillPath(outline(side, 0), surface(tile, side));
    // A rim of light along the upper edge, as everything raised has it.
    painter.fillPath(outline(side, 0) - outline(side, side / 32), QColor(255, 255, 255, 80));

    const QPainterPath shape = shapeOf(tile, side);
    painter.fillPath(shape.translated(0, kShadowDrop * side), QColor(0, 0, 0, 50));
    painter.fillPath(shape, Qt::white);
    return image;
}

} // namespace orvanta::demo
