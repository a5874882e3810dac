#pragma once

#include "core/platform/RunLoop.h"

namespace orvanta {

/// What a click on the panel's icon means. The desktop takes the keyboard from the panel before it
/// tells of the click, which hides it: a click so soon after is the one that closes, and must not
/// open it again.
class PanelToggle {
public:
    static constexpr Seconds sameClick{0.25};

    void hidden(Seconds now) noexcept { hidden_ = now; }

    /// Whether the panel is to be shown; it is to be hidden otherwise.
    [[nodiscard]] bool isToShow(bool isVisible, Seconds now) const noexcept {
        return !isVisible && now - hidden_ > sameClick;
    }

private:
    Seconds hidden_{-1.0};
};

} // namespace orvanta
