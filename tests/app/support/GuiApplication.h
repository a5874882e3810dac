#pragma once

#include <QGuiApplication>

namespace orvanta::test {

/// The toolkit, started by the first test that needs it.
inline void startGui() {
    static int argumentCount = 1;
    static char name[] = "orvanta_gui_tests";
    static char* arguments[] = {name, nullptr};
    static const QGuiApplication application(argumentCount, arguments);
}

} // namespace orvanta::test
