#pragma once

#include "app/shell/ShellWindows.h"
#include "core/platform/NotificationCenter.h"

#include <memory>

namespace orvanta {

/// Shows the console whenever the hot key's notification comes. Despite the notification's name a
/// second press hides nothing.
class ConsoleHotKey {
public:
    /// `windows` must outlive it.
    ConsoleHotKey(NotificationCenter& notifications, ShellWindows& windows);

private:
    std::unique_ptr<NotificationCenter::Observation> panel_;
    std::unique_ptr<NotificationCenter::Observation> console_;
};

} // namespace orvanta
