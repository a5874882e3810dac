#pragma once

#include <QColor>

namespace orvanta {

/// The colour at this opacity, 0 to 1, whatever it had.
[[nodiscard]] inline QColor withOpacity(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

} // namespace orvanta
