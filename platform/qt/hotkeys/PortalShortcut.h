#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

namespace orvanta {

/// A shortcut as the portal is told of it and tells of it: (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

using PortalShortcuts = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

/// Once before such lists are sent or received; more than once does no harm.
void registerPortalShortcutTypes();

} // namespace orvanta

Q_DECLARE_METATYPE(orvanta::PortalShortcut)
