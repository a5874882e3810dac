#include "tests/platform/qt/support/FakeTray.h"

#include <QDBusVariant>
#include <stdexcept>
#include <utility>

namespace orvanta::test {

namespace {

const QString kTrayService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kTrayPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

FakeTray::FakeTray(const PrivateBus& bus, bool hasHost) : connection_(bus), hasHost_(hasHost) {
    if (!connection_->registerVirtualObject(kTrayPath, this) ||
        !connection_->registerService(kTrayService))
        throw std::runtime_error("the bus has a tray already");
}

void FakeTray::setHost(bool hasHost) {
    hasHost_ = hasHost;
    connection_->send(
        QDBusMessage::createSignal(kTrayPath, kTrayService,
                                   hasHost ? QStringLiteral("StatusNotifierHostRegistered")
                                           : QStringLiteral("StatusNotifierHostUnregistered")));
}

void FakeTray::answer() {
    for (const QDBusMessage& question : std::exchange(questions_, {}))
        connection_->send(
            question.createReply(QVariant::fromValue(QDBusVariant(QVariant(hasHost_)))));
}

QString FakeTray::introspect(const QString& /*path*/) const {
    return {};
}

bool FakeTray::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
    const QList<QVariant> wanted{kTrayService, QStringLiteral("IsStatusNotifierHostRegistered")};
    if (message.member() != QLatin1String("Get") || message.arguments() != wanted)
        return false;
    questions_.push_back(message);
    if (!isSlow)
        answer();
    return true;
}

} // namespace orvanta::test
