#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QVariantMap>
#include <memory>

namespace orvanta {

/// A view of the module by its file ("popover/AudioMixerPopover.qml"). Of `properties` it begins
/// with those that it has. Throws std::runtime_error with the engine's words when it cannot be
/// made.
[[nodiscard]] std::unique_ptr<QObject> makeView(QQmlEngine& engine, const QString& file,
                                                const QVariantMap& properties);

} // namespace orvanta
