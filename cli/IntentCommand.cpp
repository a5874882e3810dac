#include "cli/IntentCommand.h"

#include "core/platform/Logger.h"
#include "platform/qt/automation/IntentClient.h"

#include <fmt/format.h>

#include <QCoreApplication>

namespace orvanta::cli {
namespace {

/// The one of the mixer itself.
QString mixerName() {
    return QString::fromUtf8(kLogSubsystem.data(), static_cast<qsizetype>(kLogSubsystem.size()));
}

void printShortcut(const IntentShortcut& shortcut) {
    fmt::print("{}: {} ({})\n", shortcut.method, shortcut.title, shortcut.symbol);
    for (const std::string& phrase : shortcut.phrases)
        fmt::print("  \"{}\"\n", phrase);
    if (const auto& argument = shortcut.argument)
        fmt::print("  {{{}}}: {}, {} if not said\n", argument->name, argument->description,
                   argument->defaultValue);
}

void printAnswer(const IntentClient& mixer, const IntentOptions& options) {
    switch (options.intent) {
    case Intent::setVolume:
        fmt::print("{}\n", mixer.setVolume(options.volume));
        break;
    case Intent::toggleMute:
        fmt::print("{}\n", mixer.toggleMute());
        break;
    case Intent::listApps:
        fmt::print("{}\n", mixer.listAudioApps());
        break;
    case Intent::shortcuts:
        for (const IntentShortcut& shortcut : mixer.listShortcuts())
            printShortcut(shortcut);
        break;
    }
}

} // namespace

int runIntentCommand(const IntentOptions& options) {
    // The bus is Qt's, which wants to be an application. Nothing else here needs it, so the other
    // commands start without it.
    static char name[] = "AudioMixerCLI";
    char* arguments[] = {name, nullptr};
    int argumentCount = 1;
    const QCoreApplication application(argumentCount, arguments);
    // Whoever makes the types of messages known first outlives the thread of the bus, which may
    // still read one when the program ends.
    registerIntentShortcutRecords();
    printAnswer(IntentClient(QDBusConnection::sessionBus(), mixerName()), options);
    return kExitSuccess;
}

} // namespace orvanta::cli
