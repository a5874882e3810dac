#pragma once

#include "platform/qt/automation/IntentShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// The intents of a program that runs in this session, asked for over the session bus. Each call
/// waits for the answer, for 10 s at the most, and throws std::runtime_error with a sentence where
/// none comes.
class IntentClient {
public:
    /// `name` is the program's on the bus.
    IntentClient(QDBusConnection sessionBus, QString name);

    /// Percent; the program knows what holds without one.
    [[nodiscard]] std::string setVolume(std::optional<std::int64_t> volume) const;
    [[nodiscard]] std::string toggleMute() const;
    [[nodiscard]] std::string listAudioApps() const;
    [[nodiscard]] std::vector<IntentShortcut> listShortcuts() const;

private:
    /// The one value of the answer.
    [[nodiscard]] QVariant ask(const QString& method, const QVariantList& arguments = {}) const;

    QDBusConnection bus_;
    QString name_;
};

} // namespace orvanta
