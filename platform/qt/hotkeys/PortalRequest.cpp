#include "platform/qt/hotkeys/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <atomic>
#include <utility>

namespace orvanta {
namespace {

constexpr auto kRequestInterface = "org.freedesktop.portal.Request";

/// The portal makes the answering object's name of the caller's and the token.
QString answerPath(const QDBusConnection& bus, const QString& token) {
    QString caller = bus.baseService().mid(1);
    caller.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QLatin1String(PortalRequest::kPath) + QLatin1String("/request/") + caller +
           QLatin1Char('/') + token;
}

std::string refusal(uint response) {
    return response == 1 ? "the user or the desktop declined" : "the request was ended";
}

} // namespace

QString PortalRequest::newToken() {
    static std::atomic<unsigned> count = 0;
    return QStringLiteral("orvanta%1").arg(++count);
}

PortalRequest::PortalRequest(QDBusConnection bus, QString portal, const QString& method,
                             const QVariantList& arguments, QVariantMap options, Done done)
    : bus_(std::move(bus)), portal_(std::move(portal)), done_(std::move(done)) {
    const QString token = newToken();
    options[QStringLiteral("handle_token")] = token;
    path_ = answerPath(bus_, token);
    // Before the call: the answer may be quicker than the call's own return.
    bus_.connect(portal_, path_, QLatin1String(kRequestInterface), QStringLiteral("Response"), this,
                 SLOT(receive(uint, QVariantMap)));
    QDBusMessage call = QDBusMessage::createMethodCall(portal_, QLatin1String(kPath),
                                                       QLatin1String(kInterface), method);
    call.setArguments(QVariantList(arguments) << options);
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError())
            finish({.results = {}, .failure = reply.error().message().toStdString()});
    });
}

PortalRequest::~PortalRequest() {
    if (!done_)
        return;
    stopListening();
    bus_.send(QDBusMessage::createMethodCall(portal_, path_, QLatin1String(kRequestInterface),
                                             QStringLiteral("Close")));
}

void PortalRequest::receive(uint response, const QVariantMap& results) {
    if (response == 0)
        finish({.results = results, .failure = std::nullopt});
    else
        finish({.results = {}, .failure = refusal(response)});
}

void PortalRequest::stopListening() {
    bus_.disconnect(portal_, path_, QLatin1String(kRequestInterface), QStringLiteral("Response"),
                    this, SLOT(receive(uint, QVariantMap)));
}

void PortalRequest::finish(const Answer& answer) {
    if (!done_)
        return;
    stopListening();
    // Last: it may be the end of this object.
    std::exchange(done_, nullptr)(answer);
}

} // namespace orvanta
