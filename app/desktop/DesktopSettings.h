#pragma once

#include "app/themes/DesktopLook.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <functional>

namespace orvanta {

/// The desktop's settings that concern all windows, read from the settings portal and followed from
/// then on, and whether there is a compositor. Without a portal nothing is asked of windows.
class DesktopSettings final : public QObject {
    Q_OBJECT

public:
    /// `changed` is called at once, and then whenever the look has become another.
    DesktopSettings(QDBusConnection sessionBus, std::function<void(const DesktopLook&)> changed);

    /// Of a compositor that has come or gone no message tells: to be called when the panel shows.
    void lookForCompositor();

private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void read(const QString& group, const QString& key);
    void become(const DesktopLook& look);
    void take(const QString& group, const QString& key, const QVariant& value);

    QDBusConnection bus_;
    const std::function<void(const DesktopLook&)> changed_;
    DesktopLook look_;
};

} // namespace orvanta
