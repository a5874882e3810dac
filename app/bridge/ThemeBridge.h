#pragma once

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
    /// The desktop's wishes.
    Q_PROPERTY(bool isHighContrast MEMBER isHighContrast_ NOTIFY wishesChanged)
    /// What is drawn without a graphics card.
    Q_PROPERTY(bool isTextThickened READ isTextThickened CONSTANT)
    Q_PROPERTY(bool isMotionReduced MEMBER isMotionReduced_ NOTIFY wishesChanged)

public:
    /// `manager` must outlive it.
    explicit ThemeBridge(ThemeManager& manager);

    /// For the engine. A programming error before `setFor`.
    static ThemeBridge* create(QQmlEngine* engine, QJSEngine* scriptEngine);
    /// The views of this engine see `bridge`, which must outlive it.
    static void setFor(QQmlEngine& engine, ThemeBridge& bridge);

    [[nodiscard]] QVariantMap colors() const;

    [[nodiscard]] QStringList themeNames() const;
    [[nodiscard]] int themeIndex() const;
    void chooseTheme(int index);
    [[nodiscard]] QString themeHelp() const;

    Q_INVOKABLE void chooseNextTheme() { manager_.chooseNext(); }

    [[nodiscard]] bool isTextThickened() const;
    void setWishes(bool isHighContrast, bool isMotionReduced);

Q_SIGNALS:
    void changed();
    void wishesChanged();

private:
    ThemeManager& manager_;
    /// The coming one already while that is being told.
    ThemeChoice choice_;
    Observation observation_;
    bool isHighContrast_ = false;
    bool isMotionReduced_ = false;
};

} // namespace orvanta
