#pragma once

#include "app/bridge/MixerBridge.h"
#include "app/bridge/ShellBridge.h"
#include "app/bridge/ThemeBridge.h"
#include "tests/app/shell/FakeWindows.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/model/ModelRig.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <memory>
#include <string>
#include <vector>

namespace orvanta::test {

/// The views over a mixer model in virtual time whose collaborators are fakes. Nothing of a view
/// moves by itself: the model's time is advanced by hand, and the desktop wishes for less motion.
class ViewRig : public ModelRig {
public:
    ViewRig();
    ~ViewRig();

    ThemeManager themes{userDefaults};
    ThemeBridge theme{themes};
    FakeWindows windows;
    OnboardingTrigger onboarding{userDefaults, windows, runLoop};
    TemporaryDirectory home;
    CrashReporter crashReporter{{.homeDirectory = home.path()}, wallClock};
    std::vector<std::string> openedURLs;
    int quits = 0;
    int updateChecks = 0;
    std::unique_ptr<ShellBridge> shell;
    std::unique_ptr<MixerBridge> mixer;
    QQmlEngine engine;

    /// What the model has changed reaches the views.
    void settle() { runLoop.advance(Seconds{0.0}); }

    /// A view of the module by its file ("popover/AudioMixerPopover.qml"), with the bridges that it
    /// asks for and what else it is to begin with. Throws with the engine's words.
    [[nodiscard]] std::unique_ptr<QObject> make(const QString& file, QVariantMap properties = {});

    /// Lets the meters reach their levels.
    void letMetersRise();
};

} // namespace orvanta::test
