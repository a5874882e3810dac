#pragma once

#include "platform/qt/hotkeys/X11Connection.h"

#include <QSocketNotifier>
#include <QTimer>
#include <functional>

namespace orvanta {

/// Reads a display's events from the event loop of the thread that makes it. Rests for ever once
/// the display has died.
class X11EventReader {
public:
    /// `handle` gets one event after the other, `finish` is called when no more wait and when the
    /// display has died. Neither may end the reader. `connection` must outlive it.
    X11EventReader(X11Connection& connection,
                   std::function<void(const xcb_generic_event_t&)> handle,
                   std::function<void()> finish);

    /// To be called after requests that were answered: events that came in with an answer are not
    /// left lying.
    void readSoon() { soonTimer_.start(); }

private:
    void read();

    X11Connection& connection_;
    const std::function<void(const xcb_generic_event_t&)> handle_;
    const std::function<void()> finish_;
    QSocketNotifier notifier_;
    QTimer soonTimer_;
};

} // namespace orvanta
