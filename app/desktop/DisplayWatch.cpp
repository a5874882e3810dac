#include "app/desktop/DisplayWatch.h"

#include <QString>
#include <cstdio>
#include <cstdlib>

namespace orvanta {
namespace {

void tell(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    std::fprintf(stderr, "%s\n", qPrintable(text));
    if (type != QtFatalMsg)
        return;
    std::fputs("Orvanta: the desktop does not answer (DISPLAY and WAYLAND_DISPLAY say where it "
               "should be).\n",
               stderr);
    // Nothing has begun that would have to be ended, and the toolkit aborts when this returns.
    std::_Exit(EXIT_FAILURE);
}

} // namespace

DisplayWatch::DisplayWatch() : before_(qInstallMessageHandler(&tell)) {}

DisplayWatch::~DisplayWatch() {
    qInstallMessageHandler(before_);
}

} // namespace orvanta
