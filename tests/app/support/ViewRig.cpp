#include "tests/app/support/ViewRig.h"

#include "app/bridge/makeView.h"
#include "app/drawing/Fonts.h"
#include "app/drawing/ShadowImages.h"

namespace orvanta::test {

ViewRig::ViewRig() {
    loadFonts();
    startRunning();
    shell = std::make_unique<ShellBridge>(
        BundleInfo{.shortVersion = "1.0.0", .version = "1"}, windows, onboarding, crashReporter,
        ShellBridge::Actions{
            .checkForUpdates = [this] { ++updateChecks; },
            .openURL = [this](const std::string& url) { openedURLs.push_back(url); },
            .quit =
                [this] {
                    ++quits;
                }});
    mixer = std::make_unique<MixerBridge>(model, platformWith(server));
    theme.setLook({.isMotionReduced = true, .hasCompositor = true});
    ThemeBridge::setFor(engine, theme);

    engine.addImportPath("qrc:/qt/qml");
    engine.addImageProvider(ShadowImages::name, new ShadowImages);
}

ViewRig::~ViewRig() = default;

std::unique_ptr<QObject> ViewRig::make(const QString& file, QVariantMap properties) {
    properties.insert("mixer", QVariant::fromValue(mixer.get()));
    properties.insert("shell", QVariant::fromValue(shell.get()));
    return makeView(engine, file, properties);
}

void ViewRig::letMetersRise() {
    runLoop.advance(Seconds{0.5});
}

} // namespace orvanta::test
