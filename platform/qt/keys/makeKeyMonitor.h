#pragma once

#include "core/platform/HotKeyCenter.h"
#include "core/platform/KeyMonitor.h"
#include "platform/qt/hotkeys/makeHotKeyCenter.h"

#include <functional>
#include <memory>

namespace orvanta {

/// Sees the keys of other programs where this session shows them: on an X display that answers; not
/// under Wayland, where it would be told of X programs only. `hotKeys` is what `makeHotKeyCenter`
/// has made for the session, and must outlive the monitor; `hasFocus` tells whether a window of
/// this program has the keyboard. To be used on the calling thread, in which an event loop must
/// run.
[[nodiscard]] std::unique_ptr<KeyMonitor> makeKeyMonitor(const DesktopSession& session,
                                                         const HotKeyCenter& hotKeys,
                                                         std::function<bool()> hasFocus);

} // namespace orvanta
