#include "tests/platform/qt/support/EventLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace orvanta::test {

void startQt() {
    static int argumentCount = 1;
    static char name[] = "orvanta_qt_tests";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
}

bool eventuallyInEventLoop(Seconds bound, const std::function<bool()>& isSo) {
    return eventually(bound, [&] {
        QCoreApplication::processEvents();
        return isSo();
    });
}

bool eventLoopComesToRest() {
    constexpr int kQuietTurns = 20;
    int quietTurns = 0;
    return eventually(Seconds(20), [&] {
        const bool wasQuiet =
            !QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents);
        quietTurns = wasQuiet ? quietTurns + 1 : 0;
        return quietTurns == kQuietTurns;
    });
}

} // namespace orvanta::test
