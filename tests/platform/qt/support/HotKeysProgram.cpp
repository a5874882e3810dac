// Registers the mixer's four hot keys the way the program does, and tells on standard output what
// is logged and which actions run. Takes "unregister ID" and "register KEYCODE MODIFIERS WORD" on
// standard input and says "done".

#include "core/services/HotkeyManager.h"
#include "platform/qt/hotkeys/makeHotKeyCenter.h"
#include "platform/runloop/WorkerRunLoop.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <iostream>
#include <mutex>
#include <sstream>
#include <string>
#include <unistd.h>

namespace orvanta::test {
namespace {

void say(const std::string& line) {
    static std::mutex mutex;
    const std::scoped_lock guard(mutex);
    std::cout << line << std::endl;
}

Task saying(const std::string& word) {
    return [word] {
        say(word);
    };
}

class SayingLog final : public SystemLog {
public:
    void write(const LogRecord& record) override {
        say((record.level == LogLevel::error ? "error: " : "info: ") + std::string(record.message));
    }
};

void obey(HotkeyManager& manager, const std::string& line) {
    std::istringstream words(line);
    std::string command;
    std::string name;
    std::uint32_t number = 0;
    std::uint32_t modifiers = 0;
    words >> command >> number;
    if (command == "unregister")
        manager.unregister(number);
    else if (command == "register" && words >> modifiers >> name)
        manager.registerHotkey(number, modifiers, saying(name));
    say("done");
}

/// Calls `obey` for each line; ends the program with the last.
void readCommands(HotkeyManager& manager, std::string& received) {
    char bytes[256];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
        QCoreApplication::quit();
        return;
    }
    received.append(bytes, static_cast<std::size_t>(count));
    for (auto end = received.find('\n'); end != std::string::npos; end = received.find('\n')) {
        obey(manager, received.substr(0, end));
        received.erase(0, end + 1);
    }
}

int runHotKeys(int argc, char** argv) {
    // Of a display that goes.
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    SayingLog log;
    const auto center = makeHotKeyCenter(DesktopSession::ofEnvironment(),
                                         QDBusConnection(QStringLiteral("none")), log);
    WorkerRunLoop mainRunLoop;
    mainRunLoop.start("main queue");
    const auto manager = HotkeyManager::create(*center, mainRunLoop, log);
    manager->registerDefaults(saying("volume up"), saying("volume down"), saying("mute"));
    manager->registerHotkey(HotkeyManager::rawValue(HotkeyManager::KeyCode::c),
                            HotkeyManager::cmdShift, saying("command center"));
    say("ready");

    std::string received;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input,
                     [&] { readCommands(*manager, received); });
    const int result = QCoreApplication::exec();
    manager->unregisterAll();
    HotkeyManager::releaseCurrent();
    return result;
}

} // namespace
} // namespace orvanta::test

int main(int argc, char** argv) {
    return orvanta::test::runHotKeys(argc, argv);
}
