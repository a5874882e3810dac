#include "app/desktop/OrvantaDeskApp.h"

#include "app/automation/OrvantaIntentBridge.h"
#include "app/desktop/NoLoginItem.h"
#include "app/desktop/makeIntentService.h"
#include "app/drawing/ShadowImages.h"
#include "app/shell/GlobalMuteKey.h"
#include "app/shell/WindowNames.h"
#include "core/model/DiagnosticLog.h"
#include "core/services/HotkeyManager.h"
#include "platform/linux/desktop/AutostartEntry.h"
#include "platform/linux/desktop/DesktopFolders.h"
#include "platform/qt/hotkeys/makeHotKeyCenter.h"
#include "platform/qt/keys/makeKeyMonitor.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>
#include <chrono>
#include <utility>

namespace orvanta {
namespace {

const HotKeyDescriptions kHotKeyDescriptions{
    {{HotkeyManager::rawValue(HotkeyManager::KeyCode::upArrow), HotkeyManager::cmdShift},
     "Turn the volume up"},
    {{HotkeyManager::rawValue(HotkeyManager::KeyCode::downArrow), HotkeyManager::cmdShift},
     "Turn the volume down"},
    {{HotkeyManager::rawValue(HotkeyManager::KeyCode::m), HotkeyManager::cmdShift},
     "Mute all audio, or unmute it"},
    {{HotkeyManager::rawValue(HotkeyManager::KeyCode::c), HotkeyManager::cmdShift},
     "Open the Sound Command Center"},
};

std::unique_ptr<LoginItem> makeLoginItem(const ProgramIdentity& identity) {
    if (!identity.canLaunchAtLogin)
        return std::make_unique<NoLoginItem>();
    return std::make_unique<AutostartEntry>(
        DesktopFolders::fromEnvironment().configHome,
        AutostartEntry::Program{.identifier = identity.domain,
                                .name = "Orvanta",
                                .executable =
                                    QCoreApplication::applicationFilePath().toStdString()});
}

/// A session that has just begun may start us before its tray.
constexpr std::chrono::seconds kTrayGrace{3};

bool hasFocus() {
    return QGuiApplication::focusWindow() != nullptr;
}

} // namespace

OrvantaDeskApp::OrvantaDeskApp(Start start)
    : start_(std::move(start)),
      fileViewer_(bus_, [](const QString& address) { QDesktopServices::openUrl(QUrl(address)); }),
      hotKeyCenter_(makeHotKeyCenter(session_, bus_, start_.log, kHotKeyDescriptions)),
      loginItem_(makeLoginItem(start_.identity)),
      launchAtLogin_(*loginItem_, start_.log),
      windows_(engine_),
      appDelegate_(windows_, start_.mainRunLoop.queue()),
      onboarding_(start_.defaults, windows_, start_.mainRunLoop.queue()),
      themeManager_(start_.defaults),
      theme_(themeManager_),
      viewModel_(MixerViewModel::create(platform())),
      keyMonitor_(makeKeyMonitor(session_, *hotKeyCenter_, hasFocus)),
      consoleHotKey_(notificationCenter_, windows_),
      intents_(makeIntentService(bus_, start_.identity.domain, start_.log)),
      fetcher_({}),
      updater_({.feedURL = start_.identity.updateFeed.url,
                .publicKey = start_.identity.updateFeed.publicKey,
                .currentVersion = start_.identity.bundle.version,
                .downloadFolder = start_.identity.folders.downloads},
               {.fetcher = fetcher_,
                .mainRunLoop = start_.mainRunLoop.queue(),
                .fileViewer = fileViewer_,
                .urlOpener = urlOpener_,
                .systemLog = start_.log}),
      mixer_(viewModel_, platform()),
      shell_(start_.identity.bundle, windows_, onboarding_, start_.crashReporter, shellActions()),
      trayWatch_(session_, bus_, [this](bool isThere) { trayChanged(isThere); }) {
    if (start_.isVerbose)
        viewModel_->setDiagnosticSink(diagnosticsTo(start_.log));
    installGlobalMuteKey(*keyMonitor_, start_.mainRunLoop.queue(), viewModel_);
    viewModel_->launchAtLogin.set(launchAtLogin_.isOn());
    QObject::connect(&mixer_, &MixerBridge::launchAtLoginAsked, &mixer_,
                     [this](bool isOn) { launchAtLogin_.set(isOn); });
    connectUpdater();

    ThemeBridge::setFor(engine_, theme_);
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine_.addImageProvider(ShadowImages::name, new ShadowImages);
    windows_.give(QStringLiteral("mixer"), mixer_);
    windows_.give(QStringLiteral("shell"), shell_);
    windows_.give(QStringLiteral("updates"), updates_);
    panel_ = std::make_unique<Panel>(windows_.makePanel(), start_.mainRunLoop.queue(),
                                     [this](bool isVisible) { panelVisibilityChanged(isVisible); });
    trayGrace_.setSingleShot(true);
    QObject::connect(&trayGrace_, &QTimer::timeout, panel_.get(), [this] {
        // There is no other way to it.
        if (!trayIcon_)
            panel_->show();
    });
    windows_.onConsoleVisibility(
        [this](bool isVisible) { viewModel_->setConsoleVisible(isVisible); });
    windows_.onPanelClosed([this] { mixer_.panelClosed(); });
    windows_.setPanelHider([this] { panel_->giveWay(); });
    appDelegate_.applicationDidFinishLaunching();
}

OrvantaDeskApp::~OrvantaDeskApp() {
    const PIDSet recording = viewModel_->recordingPIDs.get();
    for (const std::int32_t pid : recording)
        viewModel_->stopRecording(pid);
    HotkeyManager::releaseCurrent();
    panel_.reset();
    windows_.clear();
}

Platform OrvantaDeskApp::platform() {
    return {.audioHardware = start_.sound.hardware(),
            .processTable = start_.sound.processes(),
            .workspace = start_.sound.workspace(),
            .systemLog = start_.log,
            .mainRunLoop = start_.mainRunLoop.queue(),
            .serialQueues = serialQueues_,
            .wallClock = start_.clock,
            .audioFileWriter = audioFiles_,
            .userDefaults = start_.defaults,
            .hotKeyCenter = *hotKeyCenter_,
            .notificationCenter = notificationCenter_,
            .fileViewer = fileViewer_,
            .userFolders = start_.identity.folders};
}

ShellBridge::Actions OrvantaDeskApp::shellActions() {
    return {.checkForUpdates = [this] { updater_.checkForUpdates(); },
            .openURL = [this](const std::string& url) { urlOpener_.open(url); },
            .quit = &OrvantaDeskApp::quit};
}

void OrvantaDeskApp::connectUpdater() {
    canCheck_ = updater_.canCheckForUpdates.observe(
        [this](const bool& can) { shell_.setCanCheckForUpdates(can); });
    // Outside of what has brought the news: a window is made.
    QObject::connect(
        &updates_, &UpdateBridge::changed, &updates_,
        [this] {
            if (updates_.hasNews())
                windows_.open(kUpdateWindow.identifier);
        },
        Qt::QueuedConnection);
    updater_.start();
}

void OrvantaDeskApp::panelVisibilityChanged(bool isVisible) {
    mixer_.setPanelVisible(isVisible);
    if (!isVisible)
        return;
    desktopSettings_.lookForCompositor();
    OrvantaIntentBridge::panelAppeared(viewModel_);
    onboarding_.panelAppeared();
}

void OrvantaDeskApp::trayChanged(bool isThere) {
    trayIcon_.reset();
    if (isThere)
        trayIcon_ = std::make_unique<TrayIcon>(
            TrayIcon::Actions{.togglePanel = [this](const QRect& icon) { panel_->toggle(icon); },
                              .showPanel = [this] { showPanel(); },
                              .openConsole =
                                  [this] {
                                      windows_.open(kConsoleWindow.identifier);
                                      windows_.activateIgnoringOtherApps();
                                  },
                              .quit = &OrvantaDeskApp::quit});
    panel_->setHasTray(isThere);
    if (std::exchange(isPanelWanted_, false))
        showPanel();
    else if (!isThere)
        trayGrace_.start(kTrayGrace);
}

void OrvantaDeskApp::showPanel() {
    if (!trayWatch_.isThere()) {
        isPanelWanted_ = true;
        return;
    }
    panel_->show(trayIcon_ ? trayIcon_->geometry() : QRect());
}

void OrvantaDeskApp::quit() {
    if (AppDelegate::applicationShouldTerminate() == NSTerminateNow)
        QCoreApplication::quit();
}

} // namespace orvanta
