#include "app/drawing/ShadowImages.h"

#include <QImage>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <vector>

namespace orvanta {
namespace {

/// Distance from a rounded square's edge, outside of it above zero. The square's middle is at 0.
double distanceFrom(double x, double y, double half, double radius) {
    const double outX = std::abs(x) - (half - radius);
    const double outY = std::abs(y) - (half - radius);
    const double outside = std::hypot(std::max(outX, 0.0), std::max(outY, 0.0));
    return outside + std::min(std::max(outX, outY), 0.0) - radius;
}

/// How dark it is at a distance from an edge that is blurred to both sides: a smooth step.
double shade(double distance, double blur) {
    const double t = std::clamp(0.5 - distance / (2.0 * blur), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

} // namespace

QImage ShadowImages::requestImage(const QString& id, QSize* size, const QSize& /*requestedSize*/) {
    const QStringList parts = id.split('/');
    const double blur = std::clamp(parts.value(0).toDouble(), 1.0, 100.0);
    const double radius = std::clamp(parts.value(1).toDouble(), 0.0, 100.0);
    const double opacity = std::clamp(parts.value(2).toDouble(), 0.0, 1.0);
    const int side = 2 * static_cast<int>(std::ceil(blur + radius + 2.0)) + 8;
    const double middle = side / 2.0;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const double distance =
                distanceFrom(x + 0.5 - middle, y + 0.5 - middle, middle - blur, radius);
            image.setPixel(
                x, y,
                qRgba(0, 0, 0,
                      static_cast<int>(std::lround(255 * opacity * shade(distance, blur)))));
        }
    if (size != nullptr)
        *size = image.size();
    return image;
}

} // namespace orvanta
