#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <functional>
#include <optional>
#include <string>

namespace orvanta {

/// One question to the desktop's portal for global shortcuts. Its answer comes from the event loop,
/// once, as a signal of an object that the portal makes for the question. Ended before that, it
/// tells the portal and nothing more comes.
class PortalRequest final : public QObject {
    Q_OBJECT

public:
    static constexpr auto kService = "org.freedesktop.portal.Desktop";
    static constexpr auto kPath = "/org/freedesktop/portal/desktop";
    static constexpr auto kInterface = "org.freedesktop.portal.GlobalShortcuts";

    struct Answer {
        QVariantMap results;
        /// Why there are no results.
        std::optional<std::string> failure;
    };

    /// May end the request.
    using Done = std::function<void(const Answer& answer)>;

    /// Calls `method` of the portal that has this name on the bus with `arguments` and, last,
    /// `options`, to which the request adds its token.
    PortalRequest(QDBusConnection bus, QString portal, const QString& method,
                  const QVariantList& arguments, QVariantMap options, Done done);
    ~PortalRequest() override;

    /// A word that no other object of this program bears on the bus.
    [[nodiscard]] static QString newToken();

    /// The portal's signal.
    Q_SLOT void receive(uint response, const QVariantMap& results);

private:
    void stopListening();
    void finish(const Answer& answer);

    QDBusConnection bus_;
    const QString portal_;
    QString path_;
    Done done_;
};

} // namespace orvanta
