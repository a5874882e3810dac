#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

#include <memory>
#include <string>
#include <vector>

namespace orvanta::test {

/// An X display of the test's own, without a screen to look at, and a window manager on it. Both
/// end with the object.
class VirtualDisplay {
public:
    /// Throws std::runtime_error when it cannot be started. `screens` are numbered from 0; the
    /// window manager has the first.
    explicit VirtualDisplay(int screens = 1);

    /// ":5".
    [[nodiscard]] const std::string& name() const { return name_; }

    /// Keys, and whatever else it is told, as if from a keyboard: `{"key", "super+shift+Up"}`.
    /// Returns when the display has taken them.
    void xdotool(std::vector<std::string> arguments) const;

    /// Ends the display as a crash would.
    void kill();

private:
    TemporaryDirectory directory_;
    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<ChildProcess> windowManager_;
    std::string name_;
};

} // namespace orvanta::test
