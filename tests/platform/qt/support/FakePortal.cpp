#include "tests/platform/qt/support/FakePortal.h"

#include "platform/qt/hotkeys/PortalShortcut.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <algorithm>
#include <stdexcept>

namespace orvanta::test {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

QString pathOf(const QString& kind, const QString& caller, const QString& token) {
    QString word = caller.mid(1);
    word.replace(QLatin1Char('.'), QLatin1Char('_'));
    return kPath + QLatin1Char('/') + kind + QLatin1Char('/') + word + QLatin1Char('/') + token;
}

QVariantMap optionsOf(const QDBusMessage& call) {
    return qdbus_cast<QVariantMap>(call.arguments().constLast());
}

} // namespace

FakePortal::FakePortal(const PrivateBus& bus) : connection_(bus) {
    registerPortalShortcutTypes();
    if (!connection_->registerVirtualObject(kPath, this, QDBusConnection::SubPath) ||
        !connection_->registerService(kService))
        throw std::runtime_error("the bus has a portal already");
}

int FakePortal::openSessions() const {
    return static_cast<int>(std::count_if(sessions.begin(), sessions.end(),
                                          [](const Session& each) { return !each.isClosed; }));
}

std::vector<FakePortal::Shortcut> FakePortal::bound() const {
    if (sessions.empty() || sessions.back().bindings.empty())
        return {};
    return sessions.back().bindings.back();
}

void FakePortal::activate(const std::string& shortcut) {
    activate(shortcut, sessions.back().path);
}

void FakePortal::activate(const std::string& shortcut, const std::string& session) {
    QDBusMessage signal = QDBusMessage::createTargetedSignal(program_, kPath, kInterface,
                                                             QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(QString::fromStdString(session)))
           << QString::fromStdString(shortcut) << qulonglong{1234} << QVariantMap();
    send(signal);
}

void FakePortal::endSession() {
    Session& session = sessions.back();
    session.isClosed = true;
    QDBusMessage signal = QDBusMessage::createTargetedSignal(
        program_, QString::fromStdString(session.path),
        QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Closed"));
    signal << QVariantMap();
    send(signal);
}

QString FakePortal::introspect(const QString& /*path*/) const {
    return {};
}

bool FakePortal::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
    program_ = message.service();
    const QString member = message.member();
    if (member == QLatin1String("Get"))
        return handleProperty(message);
    if (refusesCalls)
        send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("Not for you")));
    else if (member == QLatin1String("CreateSession"))
        createSession(message);
    else if (member == QLatin1String("BindShortcuts"))
        bindShortcuts(message);
    else if (member == QLatin1String("Close"))
        close(message);
    else
        return false;
    return true;
}

bool FakePortal::handleProperty(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (!hasGlobalShortcuts || arguments.value(0) != kInterface ||
        arguments.value(1) != QStringLiteral("version"))
        send(
            message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("No such interface")));
    else
        send(message.createReply(QVariant::fromValue(QDBusVariant(uint{1}))));
    return true;
}

void FakePortal::createSession(const QDBusMessage& message) {
    const QString token =
        optionsOf(message).value(QStringLiteral("session_handle_token")).toString();
    const QString path = pathOf(QStringLiteral("session"), message.service(), token);
    if (answerToSession == 0)
        sessions.push_back({.path = path.toStdString(), .bindings = {}});
    answer(message, answerToSession,
           {{QStringLiteral("session_handle"),
             tellsSessionsAsPaths ? QVariant::fromValue(QDBusObjectPath(path)) : QVariant(path)}});
}

void FakePortal::bindShortcuts(const QDBusMessage& message) {
    const auto path = message.arguments()[0].value<QDBusObjectPath>().path().toStdString();
    std::vector<Shortcut> shortcuts;
    for (const PortalShortcut& each : qdbus_cast<PortalShortcuts>(message.arguments()[1])) {
        const auto property = [&](const char* name) {
            return each.properties.value(QLatin1String(name)).toString().toStdString();
        };
        shortcuts.push_back({.id = each.id.toStdString(),
                             .description = property("description"),
                             .trigger = property("preferred_trigger")});
    }
    for (Session& session : sessions)
        if (session.path == path && !session.isClosed)
            session.bindings.push_back(shortcuts);
    if (isUndecided)
        send(message.createReply(QVariant::fromValue(QDBusObjectPath(
            pathOf(QStringLiteral("request"), message.service(),
                   optionsOf(message).value(QStringLiteral("handle_token")).toString())))));
    else
        answer(message, answerToBinding, {});
}

void FakePortal::close(const QDBusMessage& message) {
    if (message.path().contains(QLatin1String("/request/")))
        ++closedRequests;
    for (Session& session : sessions)
        if (session.path == message.path().toStdString())
            session.isClosed = true;
    send(message.createReply());
}

void FakePortal::answer(const QDBusMessage& call, uint response, const QVariantMap& results) {
    const QString token = optionsOf(call).value(QStringLiteral("handle_token")).toString();
    const QString path = pathOf(QStringLiteral("request"), call.service(), token);
    const QDBusMessage reply = call.createReply(QVariant::fromValue(QDBusObjectPath(path)));
    QDBusMessage signal = QDBusMessage::createTargetedSignal(
        call.service(), path, QStringLiteral("org.freedesktop.portal.Request"),
        QStringLiteral("Response"));
    signal << response << (response == 0 ? results : QVariantMap());
    send(answersBeforeItReturns ? signal : reply);
    send(answersBeforeItReturns ? reply : signal);
}

void FakePortal::send(const QDBusMessage& message) {
    connection_->send(message);
}

} // namespace orvanta::test
