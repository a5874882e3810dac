#include "platform/qt/hotkeys/X11EventReader.h"

#include <utility>

namespace orvanta {

X11EventReader::X11EventReader(X11Connection& connection,
                               std::function<void(const xcb_generic_event_t&)> handle,
                               std::function<void()> finish)
    : connection_(connection),
      handle_(std::move(handle)),
      finish_(std::move(finish)),
      notifier_(connection.descriptor(), QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { read(); });
    soonTimer_.setSingleShot(true);
    QObject::connect(&soonTimer_, &QTimer::timeout, &soonTimer_, [this] { read(); });
    readSoon();
}

void X11EventReader::read() {
    while (const X11Connection::Event event = connection_.nextEvent())
        handle_(*event);
    finish_();
    // The socket of a dead display is ready for ever.
    if (!connection_.isAlive())
        notifier_.setEnabled(false);
}

} // namespace orvanta
