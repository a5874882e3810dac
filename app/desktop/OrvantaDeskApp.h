#pragma once

#include "app/bridge/MixerBridge.h"
#include "app/bridge/ShellBridge.h"
#include "app/bridge/ThemeBridge.h"
#include "app/bridge/UpdateBridge.h"
#include "app/desktop/DesktopSettings.h"
#include "app/desktop/MainRunLoop.h"
#include "app/desktop/Panel.h"
#include "app/desktop/ProgramIdentity.h"
#include "app/desktop/QuickWindows.h"
#include "app/desktop/SoundSystem.h"
#include "app/desktop/TrayIcon.h"
#include "app/shell/AppDelegate.h"
#include "app/shell/ConsoleHotKey.h"
#include "app/shell/LaunchAtLogin.h"
#include "app/update/NetworkFetcher.h"
#include "app/update/SoftwareUpdater.h"
#include "core/platform/KeyMonitor.h"
#include "core/platform/LoginItem.h"
#include "platform/media/MediaFileWriter.h"
#include "platform/qt/automation/IntentService.h"
#include "platform/qt/desktop/DesktopFileViewer.h"
#include "platform/qt/desktop/DesktopURLOpener.h"
#include "platform/qt/desktop/TrayWatch.h"
#include "platform/runloop/InProcessNotificationCenter.h"
#include "platform/runloop/ThreadSerialQueue.h"

#include <QQmlEngine>
#include <QTimer>
#include <memory>

namespace orvanta {

/// The application: the one model and the one theme manager, the windows over them, and what the
/// desktop and the mixer tell each other. Lives while the event loop runs, on its thread.
class OrvantaDeskApp {
public:
    /// What the program's start has made already; outlives the application.
    struct Start {
        ProgramIdentity identity;
        SystemLog& log;
        WallClock& clock;
        UserDefaults& defaults;
        CrashReporter& crashReporter;
        MainRunLoop& mainRunLoop;
        SoundSystem& sound;
        /// Tells the log in detail what the mixer does.
        bool isVerbose = false;
    };

    explicit OrvantaDeskApp(Start start);
    OrvantaDeskApp(const OrvantaDeskApp&) = delete;
    OrvantaDeskApp& operator=(const OrvantaDeskApp&) = delete;
    /// Finishes recordings, and gives all sound back.
    ~OrvantaDeskApp();

    /// As soon as it is known whether there is a tray.
    void showPanel();
    /// At once, without a question.
    static void quit();

private:
    [[nodiscard]] Platform platform();
    [[nodiscard]] ShellBridge::Actions shellActions();
    void connectUpdater();
    void panelVisibilityChanged(bool isVisible);
    void trayChanged(bool isThere);

    const Start start_;
    const DesktopSession session_ = DesktopSession::ofEnvironment();
    QDBusConnection bus_ = QDBusConnection::sessionBus();
    ThreadSerialQueues serialQueues_;
    MediaFileWriter audioFiles_;
    InProcessNotificationCenter notificationCenter_;
    DesktopFileViewer fileViewer_;
    DesktopURLOpener urlOpener_;
    const std::unique_ptr<HotKeyCenter> hotKeyCenter_;
    const std::unique_ptr<LoginItem> loginItem_;
    LaunchAtLogin launchAtLogin_;

    QQmlEngine engine_;
    QuickWindows windows_;
    AppDelegate appDelegate_;
    OnboardingTrigger onboarding_;
    ThemeManager themeManager_;
    ThemeBridge theme_;
    DesktopSettings desktopSettings_{bus_, [this](const DesktopLook& look) {
                                         theme_.setLook(look);
                                     }};
    std::shared_ptr<MixerViewModel> viewModel_;
    const std::unique_ptr<KeyMonitor> keyMonitor_;
    ConsoleHotKey consoleHotKey_;
    const std::unique_ptr<IntentService> intents_;
    NetworkFetcher fetcher_;
    SoftwareUpdater updater_;
    UpdateBridge updates_{updater_};
    Observation canCheck_;
    MixerBridge mixer_;
    ShellBridge shell_;
    std::unique_ptr<Panel> panel_;
    std::unique_ptr<TrayIcon> trayIcon_;
    bool isPanelWanted_ = false;
    QTimer trayGrace_;
    TrayWatch trayWatch_;
};

} // namespace orvanta
