#include "app/desktop/runProgram.h"

#include "app/desktop/DisplayWatch.h"
#include "app/desktop/OrvantaDeskApp.h"
#include "app/desktop/QuitSignals.h"
#include "app/drawing/Fonts.h"
#include "platform/linux/JournalLog.h"
#include "platform/linux/LinuxHost.h"
#include "platform/linux/OwnerLock.h"
#include "platform/linux/StandardErrorLog.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "platform/qt/session/SingleInstance.h"
#include "platform/runloop/SystemWallClock.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <QApplication>
#include <QQuickWindow>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>

namespace orvanta {
namespace {

enum ExitCode { exitSuccess = 0, exitFailure = 1, exitUsage = 2, exitOwned = 3 };

struct Options {
    bool isVerbose = false;
    bool isPanelShown = false;
    std::optional<int> exitCode;
};

Options parse(int argc, char** argv, const ProgramIdentity& identity) {
    Options options;
    CLI::App app{"Orvanta: a mixer for every program that makes sound"};
    app.add_flag("--verbose", options.isVerbose, "Tell on standard error what happens");
    app.add_flag("--panel", options.isPanelShown, "Show the panel at once");
    app.set_version_flag("--version", fmt::format("Orvanta {} ({})", identity.bundle.shortVersion,
                                                  identity.bundle.version));
    // What is the toolkit's own is left to it.
    app.allow_extras();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        options.exitCode = app.exit(error) == 0 ? exitSuccess : exitUsage;
    }
    return options;
}

void complain(const std::string& sentence) {
    fmt::print(stderr, "Orvanta: {}\n", sentence);
}

bool hasDisplay() {
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* const value = std::getenv(name); value != nullptr && *value != '\0')
            return true;
    return false;
}

/// A graphics card draws faster than the processor; without one, asking for it costs a tenth of a
/// second and much memory, and what then stands in for it draws ten times slower than we do.
bool hasGraphicsCard() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error))
        if (entry.path().filename().string().starts_with("renderD"))
            return true;
    return false;
}

int runApplication(const ProgramIdentity& identity, const Options& options, SystemLog& log,
                   WallClock& clock, SQLiteUserDefaults& defaults, CrashReporter& crashReporter,
                   QuitSignals& signals, const MakeSoundSystem& makeSoundSystem) {
    OrvantaDeskApp* running = nullptr;
    const SingleInstance instance({.folder = sessionFolder(std::getenv("XDG_RUNTIME_DIR"),
                                                           identity.settingsFile.parent_path()),
                                   .name = identity.instanceName},
                                  [&running] {
                                      if (running != nullptr)
                                          running->showPanel();
                                  });
    if (instance.start() == SingleInstance::Start::heard)
        return exitSuccess;
    if (instance.start() == SingleInstance::Start::unanswered) {
        complain("it runs already, but does not answer.");
        return exitOwned;
    }
    std::optional<OwnerLock> owner;
    if (identity.ownsSession)
        owner.emplace(
            ownerLockFile(std::getenv("XDG_RUNTIME_DIR"), identity.settingsFile.parent_path()));
    if (owner && !owner->isOurs()) {
        complain(fmt::format("a mixer runs in this session already ({}); it has to end first.",
                             owner->owner() ? fmt::format("process {}", *owner->owner())
                                            : "another process"));
        return exitOwned;
    }
    loadFonts();
    MainRunLoop mainRunLoop;
    const auto sound = makeSoundSystem(identity, mainRunLoop.queue(), log);
    OrvantaDeskApp app({.identity = identity,
                        .log = log,
                        .clock = clock,
                        .defaults = defaults,
                        .crashReporter = crashReporter,
                        .mainRunLoop = mainRunLoop,
                        .sound = *sound,
                        .isVerbose = options.isVerbose});
    running = &app;
    signals.listen(&OrvantaDeskApp::quit);
    if (options.isPanelShown)
        app.showPanel();
    const int exitCode = QApplication::exec();
    running = nullptr;
    return exitCode;
}

int run(int argc, char** argv, const ProgramIdentity& identity,
        const MakeSoundSystem& makeSoundSystem) {
    const Options options = parse(argc, argv, identity);
    if (options.exitCode)
        return *options.exitCode;
    if (!hasDisplay()) {
        complain("there is no desktop to show anything on (neither DISPLAY nor WAYLAND_DISPLAY is "
                 "set).");
        return exitFailure;
    }
    // A reader that goes away must not take the program down, nor must a recording that meets the
    // user's limit on file sizes: their writes fail instead.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    QuitSignals signals;
    std::unique_ptr<SystemLog> log;
    if (options.isVerbose)
        log = std::make_unique<StandardErrorLog>();
    else
        log = std::make_unique<JournalLog>("orvanta");
    static SystemWallClock clock;
    SQLiteUserDefaults defaults({.file = identity.settingsFile, .domain = identity.domain}, clock,
                                *log);
    HostInfo host = linuxHost(identity.bundle.shortVersion, identity.bundle.version);
    host.homeDirectory = identity.home;
    CrashReporter& crashReporter = CrashReporter::makeShared(host, clock);
    crashReporter.install();

    if (!hasGraphicsCard())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    std::optional<DisplayWatch> displayWatch(std::in_place);
    QApplication application(argc, argv);
    displayWatch.reset();
    QApplication::setApplicationName(QStringLiteral("Orvanta"));
    QApplication::setDesktopFileName(QString::fromStdString(identity.domain));
    QApplication::setQuitOnLastWindowClosed(false);
    const int exitCode = runApplication(identity, options, *log, clock, defaults, crashReporter,
                                        signals, makeSoundSystem);
    if (!defaults.synchronize()) {
        complain("the last changes of the settings cannot be written to " +
                 identity.settingsFile.string() + ".");
        return exitFailure;
    }
    return exitCode;
}

} // namespace

int runProgram(int argc, char** argv, const FindIdentity& findIdentity,
               const MakeSoundSystem& makeSoundSystem) {
    try {
        return run(argc, argv, findIdentity(), makeSoundSystem);
    } catch (const std::exception& failure) {
        complain(std::string(failure.what()) + ".");
        return exitFailure;
    }
}

} // namespace orvanta
