#include "platform/qt/desktop/BusTray.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace orvanta {
namespace {

constexpr QLatin1String kService("org.kde.StatusNotifierWatcher");
constexpr QLatin1String kPath("/StatusNotifierWatcher");
constexpr QLatin1String kProperties("org.freedesktop.DBus.Properties");
/// One that has not answered by then draws no icons either. What it says later counts.
constexpr int kAnswerBoundMs = 5000;

QDBusMessage propertyQuestion() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(kService, kPath, kProperties, QStringLiteral("Get"));
    question << QString(kService) << QStringLiteral("IsStatusNotifierHostRegistered");
    // To look for a tray is no reason to start one.
    question.setAutoStartService(false);
    return question;
}

} // namespace

BusTray::BusTray(QDBusConnection sessionBus, std::function<void()> changed)
    : bus_(std::move(sessionBus)),
      changed_(std::move(changed)),
      ownerWatcher_(kService, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
    answerTimer_.setSingleShot(true);
    connect(&answerTimer_, &QTimer::timeout, this, &BusTray::receiveAnswer);
    connect(&ownerWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, &BusTray::ask);
    askAt(kPath, kService, QStringLiteral("StatusNotifierHostRegistered"));
    askAt(kPath, kService, QStringLiteral("StatusNotifierHostUnregistered"));
    askAt(kPath, kProperties, QStringLiteral("PropertiesChanged"));
    askAt(QStringLiteral("/org/freedesktop/DBus/Local"),
          QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"));
    ask();
}

void BusTray::askAt(const QString& path, const QString& interface, const QString& signal) {
    bus_.connect(QString(), path, interface, signal, this, SLOT(ask()));
}

void BusTray::ask() {
    const QDBusPendingCall answer = bus_.asyncCall(propertyQuestion(), kAnswerBoundMs);
    // An answer that is still on its way is to another question.
    answerTimer_.stop();
    question_ = std::make_unique<QDBusPendingCallWatcher>(answer);
    if (answer.isFinished())
        // Without a bus the answer is there at once, and no watcher would be told of it.
        answerTimer_.start();
    else
        connect(question_.get(), &QDBusPendingCallWatcher::finished, this, &BusTray::receiveAnswer);
}

void BusTray::receiveAnswer() {
    const QDBusPendingReply<QDBusVariant> reply = *question_;
    set(!reply.isError() && reply.value().variant().toBool());
}

void BusTray::set(bool isThere) {
    if (std::exchange(isThere_, isThere) != isThere)
        changed_();
}

} // namespace orvanta
