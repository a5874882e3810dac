#pragma once

#include <QImage>
#include <string_view>

namespace orvanta::demo {

/// What the icon of a demo program looks like: a white symbol on a rounded tile.
struct IconTile {
    std::string_view symbol; ///< a name among `symbols`
    QRgb top;                ///< upper left
    QRgb bottom;             ///< lower right
};

/// The tile as a square picture, the same at every call. Main thread, with a QGuiApplication;
/// throws where the symbols' font cannot be used.
[[nodiscard]] QImage paintTile(const IconTile& tile, int pixels);

} // namespace orvanta::demo
