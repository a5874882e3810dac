#include "app/shell/PanelPlace.h"

#include <algorithm>

namespace orvanta {
namespace {

constexpr int kMargin = 6;

/// Between the screen's ends; at its beginning where it is too small.
int within(int position, int size, int start, int length) noexcept {
    return std::max(std::min(position, start + length - size - kMargin), start + kMargin);
}

} // namespace

DesktopPoint panelPlace(const DesktopRect& icon, const DesktopRect& screen, int width,
                        int height) noexcept {
    const bool isIconAbove = icon.y + icon.height / 2 < screen.y + screen.height / 2;
    const int x = icon.x + icon.width / 2 - width / 2;
    const int y = isIconAbove ? icon.y + icon.height + kMargin : icon.y - height - kMargin;
    return {.x = within(x, width, screen.x, screen.width),
            .y = within(y, height, screen.y, screen.height)};
}

} // namespace orvanta
