#pragma once

#include "app/themes/DesktopLook.h"
#include "app/themes/ThemeManager.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace orvanta {

/// The theme as the views see it: the colours of the current palette, and which theme that is. An
/// engine has one, which must be told to it before the first view is made.
class ThemeBridge final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(CurrentTheme)
    QML_SINGLETON
    /// The palette's fields by their names.
    Q_PROPERTY(QVariantMap colors READ colors NOTIFY changed)
    /// For people to read, in the order in which they are offered.
    Q_PROPERTY(QStringList themeNames READ themeNames CONSTANT)
    /// Which of them is chosen.
    Q_PROPERTY(int themeIndex READ themeIndex WRITE chooseTheme NOTIFY changed)
    Q_PROPERTY(QString themeHelp READ themeHelp NOTIFY changed)
    Q_PROPERTY(bool isHighContrast READ isHighContrast NOTIFY lookChanged)
    Q_PROPERTY(bool isMotionReduced READ isMotionReduced NOTIFY lookChanged)
    Q_PROPERTY(bool hasCompositor READ hasCompositor NOTIFY lookChanged)

public:
    /// `manager` must outlive it.
    explicit ThemeBridge(ThemeManager& manager);

    /// For the engine. A programming error before `setFor`.
    static ThemeBridge* create(QQmlEngine* engine, QJSEngine* scriptEngine);
    /// The views of this engine see `bridge`, which must outlive it.
    static void setFor(QQmlEngine& engine, ThemeBridge& bridge);

    [[nodiscard]] QVariantMap colors() const;

    [[nodiscard]] static QStringList themeNames();
    [[nodiscard]] int themeIndex() const;
    void chooseTheme(int index);
    [[nodiscard]] QString themeHelp() const;

    Q_INVOKABLE void chooseNextTheme() { manager_.chooseNext(); }

    [[nodiscard]] bool isHighContrast() const { return look_.isHighContrast; }

    [[nodiscard]] bool isMotionReduced() const { return look_.isMotionReduced; }

    [[nodiscard]] bool hasCompositor() const { return look_.hasCompositor; }

    void setLook(const DesktopLook& look);

Q_SIGNALS:
    void changed();
    void lookChanged();

private:
    ThemeManager& manager_;
    /// The coming one already while that is being told.
    ThemeChoice choice_;
    Observation observation_;
    DesktopLook look_;
};

} // namespace orvanta
