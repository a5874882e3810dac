#include "app/desktop/QuickWindows.h"

#include "app/bridge/makeView.h"
#include "app/desktop/WindowVisibility.h"
#include "app/shell/WindowNames.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>
#include <utility>

namespace orvanta {
namespace {

struct WindowFile {
    WindowName name;
    const char* file;
};

constexpr std::array kWindowFiles{
    WindowFile{kAboutWindow, "welcome/AboutWindow.qml"},
    WindowFile{kOnboardingWindow, "welcome/OnboardingWindow.qml"},
    WindowFile{kConsoleWindow, "shell/CommandCenterWindowHost.qml"},
    WindowFile{kUpdateWindow, "shell/UpdateWindow.qml"},
};

void centre(QWindow& window) {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    const QRect space = screen->availableGeometry();
    window.setPosition(space.x() + (space.width() - window.width()) / 2,
                       space.y() + (space.height() - window.height()) / 2);
}

void bringToFront(QWindow& window) {
    if (window.visibility() == QWindow::Minimized)
        window.showNormal();
    else
        window.show();
    window.raise();
    window.requestActivate();
}

} // namespace

QuickWindows::QuickWindows(QQmlEngine& engine) : engine_(engine) {}

QuickWindows::~QuickWindows() {
    clear();
}

void QuickWindows::clear() {
    for (const auto& window : open_)
        delete window.data();
    open_.clear();
    panel_.reset();
}

void QuickWindows::give(const QString& name, QObject& bridge) {
    bridges_.insert(name, QVariant::fromValue(&bridge));
}

QQuickWindow& QuickWindows::makePanel() {
    panel_ = make(QStringLiteral("shell/PopoverWithHotkey.qml"));
    return *panel_;
}

std::unique_ptr<QQuickWindow> QuickWindows::make(const QString& file) {
    return std::unique_ptr<QQuickWindow>(
        &dynamic_cast<QQuickWindow&>(*makeView(engine_, file, bridges_).release()));
}

void QuickWindows::onPanelClosed(std::function<void()> closed) {
    connect(panel_.get(), &QWindow::visibleChanged, this,
            [closed = std::move(closed)](bool isVisible) {
                if (!isVisible)
                    closed();
            });
}

void QuickWindows::open(std::string_view identifier) {
    for (const WindowFile& each : kWindowFiles) {
        if (each.name.identifier != identifier)
            continue;
        if (find(each.name.title) != nullptr) {
            makeKeyAndOrderFront(each.name.title);
            return;
        }
        QQuickWindow* const window = make(each.file).release();
        std::erase_if(open_, [](const auto& other) { return other.isNull(); });
        open_.emplace_back(window);
        connect(window, &QWindow::visibleChanged, this, [window](bool isVisible) {
            if (!isVisible)
                window->deleteLater();
        });
        if (identifier == kConsoleWindow.identifier && consoleVisibilityChanged_)
            (new WindowVisibility(*window, consoleVisibilityChanged_))->setParent(window);
        centre(*window);
        bringToFront(*window);
    }
}

QQuickWindow* QuickWindows::find(std::string_view title) const {
    const auto wanted = QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
    for (const auto& window : open_)
        if (window && window->isVisible() && window->title() == wanted)
            return window;
    return nullptr;
}

std::vector<std::string> QuickWindows::titles() const {
    std::vector<std::string> titles;
    if (panel_)
        titles.push_back(panel_->title().toStdString());
    for (const auto& window : open_)
        if (window && window->isVisible())
            titles.push_back(window->title().toStdString());
    return titles;
}

void QuickWindows::close(std::string_view title) {
    if (auto* const window = find(title))
        window->close();
}

void QuickWindows::makeKeyAndOrderFront(std::string_view title) {
    QQuickWindow* const window = find(title);
    if (window == nullptr)
        return;
    // The last is the one that comes to the front with the program.
    std::erase(open_, window);
    open_.emplace_back(window);
    bringToFront(*window);
}

void QuickWindows::closeKeyWindow() {
    // The panel, which alone opens others. It need not have the keyboard: an assistive tool presses
    // buttons without it.
    if (hidePanel_)
        hidePanel_();
}

void QuickWindows::activateIgnoringOtherApps() {
    const auto newest = std::find_if(open_.rbegin(), open_.rend(), [](const auto& window) {
        return window && window->isVisible();
    });
    if (newest != open_.rend())
        bringToFront(**newest);
}

} // namespace orvanta
