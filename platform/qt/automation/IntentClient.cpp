#include "platform/qt/automation/IntentClient.h"

#include "platform/qt/automation/IntentInterface.h"

#include <QDBusArgument>
#include <QDBusError>
#include <stdexcept>
#include <utility>

namespace orvanta {
namespace {

/// One that takes longer hangs.
constexpr int kAnswerBoundMs = 10000;

/// What the bus says of a name that nobody has and that it must not start anybody for.
constexpr QLatin1String kNobody("org.freedesktop.DBus.Error.NameHasNoOwner");

std::string sentence(const QDBusMessage& error) {
    const QDBusError::ErrorType type = QDBusError(error).type();
    if (error.errorName() == kNobody || type == QDBusError::ServiceUnknown)
        return "Orvanta does not run in this session";
    if (type == QDBusError::NoReply || type == QDBusError::Timeout ||
        type == QDBusError::Disconnected)
        return "Orvanta does not answer";
    return "Orvanta refuses: " + error.errorMessage().toStdString();
}

} // namespace

IntentClient::IntentClient(QDBusConnection sessionBus, QString name)
    : bus_(std::move(sessionBus)), name_(std::move(name)) {}

std::string IntentClient::setVolume(std::optional<std::int64_t> volume) const {
    QVariantList arguments;
    if (volume)
        arguments.push_back(QVariant::fromValue<qlonglong>(*volume));
    return ask(intents::kSetVolume, arguments).toString().toStdString();
}

std::string IntentClient::toggleMute() const {
    return ask(intents::kToggleMute).toString().toStdString();
}

std::string IntentClient::listAudioApps() const {
    return ask(intents::kListAudioApps).toString().toStdString();
}

std::vector<IntentShortcut> IntentClient::listShortcuts() const {
    std::vector<IntentShortcut> shortcuts;
    for (const QVariantMap& record :
         qdbus_cast<IntentShortcutRecords>(ask(intents::kListShortcuts)))
        shortcuts.push_back(shortcutOf(record));
    return shortcuts;
}

QVariant IntentClient::ask(const QString& method, const QVariantList& arguments) const {
    if (!bus_.isConnected())
        throw std::runtime_error("there is no session bus to find Orvanta on");
    QDBusMessage question =
        QDBusMessage::createMethodCall(name_, intents::kPath, intents::kInterface, method);
    question.setArguments(arguments);
    // To bind a key to the mixer is no reason to start it.
    question.setAutoStartService(false);
    const QDBusMessage answer = bus_.call(question, QDBus::Block, kAnswerBoundMs);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(sentence(answer));
    if (answer.arguments().size() != 1)
        throw std::runtime_error("Orvanta answers with something else");
    return answer.arguments().front();
}

} // namespace orvanta
