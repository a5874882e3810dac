#include "tests/app/support/ViewRig.h"

#include "app/drawing/Fonts.h"
#include "app/drawing/ShadowImages.h"

#include <QQmlComponent>
#include <stdexcept>

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
    theme.setWishes(false, true);
    ThemeBridge::setFor(engine, theme);
    engine.addImportPath("qrc:/qt/qml");
    engine.addImageProvider(ShadowImages::name, new ShadowImages);
}

ViewRig::~ViewRig() = default;

std::unique_ptr<QObject> ViewRig::make(const QString& file, QVariantMap properties) {
    QQmlComponent component(&engine, QUrl("qrc:/qt/qml/Orvanta/" + file));
    if (!component.isReady())
        throw std::runtime_error(component.errorString().toStdString());
    std::unique_ptr<QObject> view(component.beginCreate(engine.rootContext()));
    if (!view)
        throw std::runtime_error(component.errorString().toStdString());
    const auto offer = [&](const char* name, QObject* bridge) {
        if (view->metaObject()->indexOfProperty(name) >= 0)
            properties.insert(name, QVariant::fromValue(bridge));
    };
    offer("mixer", mixer.get());
    offer("shell", shell.get());
    component.setInitialProperties(view.get(), properties);
    component.completeCreate();
    if (component.isError())
        throw std::runtime_error(component.errorString().toStdString());
    return view;
}

void ViewRig::letMetersRise() {
    runLoop.advance(Seconds{0.5});
}

} // namespace orvanta::test
