#include "app/drawing/GradientText.h"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>

namespace orvanta {

GradientText::GradientText(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &GradientText::lookChanged, this, [this] {
        takeSize();
        update();
    });
}

void GradientText::takeSize() {
    const QFontMetricsF metrics(font_);
    setImplicitSize(metrics.horizontalAdvance(text_), metrics.height());
}

void GradientText::paint(QPainter* painter) {
    const QRectF drawn = QFontMetricsF(font_).boundingRect(boundingRect(), Qt::AlignCenter, text_);
    QLinearGradient gradient(drawn.topLeft(), isVertical_ ? drawn.bottomLeft() : drawn.topRight());
    gradient.setColorAt(0, startColor_);
    gradient.setColorAt(1, endColor_);
    painter->setRenderHint(QPainter::TextAntialiasing);
    painter->setFont(font_);
    painter->setPen(QPen(QBrush(gradient), 1));
    painter->drawText(boundingRect(), Qt::AlignCenter, text_);
}

} // namespace orvanta
