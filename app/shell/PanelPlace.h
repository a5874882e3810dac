#pragma once

namespace orvanta {

/// In logical pixels of the desktop; x to the right, y downwards.
struct DesktopPoint {
    int x = 0;
    int y = 0;

    friend bool operator==(const DesktopPoint&, const DesktopPoint&) = default;
};

struct DesktopRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Upper left corner of a panel of this width and height that belongs to an icon: centred on it, on
/// the side where there is room, and wholly within `screen`, the part of the screen that windows
/// may use. An icon without a size is a point, where the pointer was.
[[nodiscard]] DesktopPoint panelPlace(const DesktopRect& icon, const DesktopRect& screen, int width,
                                      int height) noexcept;

} // namespace orvanta
