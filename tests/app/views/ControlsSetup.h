#pragma once

#include "app/bridge/ThemeBridge.h"
#include "app/drawing/Fonts.h"
#include "app/drawing/ShadowImages.h"
#include "platform/memory/InMemoryUserDefaults.h"

#include <QObject>
#include <QQmlEngine>

namespace orvanta::test {

/// What the controls need around them. Nothing of them moves by itself.
class ControlsSetup final : public QObject {
    Q_OBJECT

public Q_SLOTS:

    void applicationAvailable() { loadFonts(); }

    void qmlEngineAvailable(QQmlEngine* engine) {
        theme_.setLook({.isMotionReduced = true});
        ThemeBridge::setFor(*engine, theme_);
        engine->addImportPath("qrc:/qt/qml");
        engine->addImageProvider(ShadowImages::name, new ShadowImages);
    }

private:
    InMemoryUserDefaults defaults_;
    ThemeManager manager_{defaults_};
    ThemeBridge theme_{manager_};
};

} // namespace orvanta::test
