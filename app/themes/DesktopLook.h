#pragma once

namespace orvanta {

/// What the user's desktop asks of all windows, and can do for them.
struct DesktopLook {
    bool isHighContrast = false;
    bool isMotionReduced = false;
    /// Something shows through where a window is transparent.
    bool hasCompositor = false;

    friend bool operator==(const DesktopLook&, const DesktopLook&) = default;
};

} // namespace orvanta
