#pragma once

#include "core/platform/Logger.h"
#include "platform/qt/automation/IntentShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantList>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// The program's intents on the session bus, for whatever runs commands there: each is a method
/// that answers with the line that the intent answers with. They run, one after the other, in the
/// event loop of the thread that makes this.
///
/// A bus that is not there, or a name that somebody else has, is told to the log. For the name it
/// waits in line.
class IntentService final : public QDBusVirtualObject {
public:
    struct Intents {
        /// Percent; none where the call says none.
        std::function<std::string(std::optional<std::int64_t> volume)> setVolume;
        std::function<std::string()> toggleMute;
        std::function<std::string()> listAudioApps;
        std::vector<IntentShortcut> shortcuts;
    };

    /// On the bus by this name from now on.
    IntentService(QDBusConnection sessionBus, QString name, SystemLog& log, Intents intents);
    IntentService(const IntentService&) = delete;
    IntentService& operator=(const IntentService&) = delete;
    ~IntentService() override;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Method;

    void takeName();
    [[nodiscard]] QDBusMessage answer(const Method& method, const QDBusMessage& call) const;
    [[nodiscard]] QVariant setVolume(const QVariantList& arguments) const;
    [[nodiscard]] QVariant toggleMute(const QVariantList& arguments) const;
    [[nodiscard]] QVariant listAudioApps(const QVariantList& arguments) const;
    [[nodiscard]] QVariant listShortcuts(const QVariantList& arguments) const;

    static const Method methods[];

    QDBusConnection bus_;
    const QString name_;
    const Logger logger_;
    bool isOffered_ = false;
    const Intents intents_;
};

} // namespace orvanta
