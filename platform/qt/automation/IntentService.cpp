#include "platform/qt/automation/IntentService.h"

#include "platform/qt/automation/IntentInterface.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <algorithm>
#include <iterator>
#include <utility>

namespace orvanta {
namespace {

/// A volume may be left out, which this language of the bus cannot say.
constexpr auto kIntrospection = R"(
  <interface name="com.meridane.orvanta.Intents">
    <method name="SetVolume">
      <arg name="volume" type="x" direction="in"/>
      <arg name="dialog" type="s" direction="out"/>
    </method>
    <method name="ToggleMute">
      <arg name="dialog" type="s" direction="out"/>
    </method>
    <method name="ListAudioApps">
      <arg name="dialog" type="s" direction="out"/>
    </method>
    <method name="ListShortcuts">
      <arg name="shortcuts" type="aa{sv}" direction="out"/>
    </method>
  </interface>
)";

QDBusMessage unknownMethod(const QDBusMessage& call) {
    return call.createErrorReply(QDBusError::UnknownMethod,
                                 QStringLiteral("There is no method %1").arg(call.member()));
}

/// `takes` is the signature of what is right.
QDBusMessage wrongArguments(const QDBusMessage& call, QLatin1String takes) {
    const QString right =
        takes.isEmpty() ? QStringLiteral("nothing") : QStringLiteral("'%1' or nothing").arg(takes);
    return call.createErrorReply(
        QDBusError::InvalidArgs,
        QStringLiteral("%1 takes %2, not '%3'").arg(call.member(), right, call.signature()));
}

QVariant dialog(const std::string& line) {
    return QString::fromStdString(line);
}

} // namespace

struct IntentService::Method {
    QLatin1String name;
    /// Signature of what may be given; a call without it is right, too.
    QLatin1String takes;
    QVariant (IntentService::*run)(const QVariantList& arguments) const;
};

const IntentService::Method IntentService::methods[] = {
    {intents::kSetVolume, intents::kVolumeSignature, &IntentService::setVolume},
    {intents::kToggleMute, QLatin1String(), &IntentService::toggleMute},
    {intents::kListAudioApps, QLatin1String(), &IntentService::listAudioApps},
    {intents::kListShortcuts, QLatin1String(), &IntentService::listShortcuts},
};

IntentService::IntentService(QDBusConnection sessionBus, QString name, SystemLog& log,
                             Intents intents)
    : bus_(std::move(sessionBus)),
      name_(std::move(name)),
      logger_(log, "automation"),
      intents_(std::move(intents)) {
    registerIntentShortcutRecords();
    if (!bus_.isConnected()) {
        logger_.error("No automation: there is no session bus");
    } else if (!bus_.registerVirtualObject(intents::kPath, this)) {
        logger_.error("No automation: its place on the session bus is taken");
    } else {
        isOffered_ = true;
        takeName();
    }
}

IntentService::~IntentService() {
    // What is in its place otherwise is somebody else's.
    if (!isOffered_ || !bus_.isConnected())
        return;
    bus_.unregisterObject(intents::kPath);
    bus_.unregisterService(name_);
}

void IntentService::takeName() {
    QDBusConnectionInterface& daemon = *bus_.interface();
    const auto reply = daemon.registerService(name_, QDBusConnectionInterface::QueueService,
                                              QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid())
        logger_.error("No automation: %s", qUtf8Printable(reply.error().message()));
    else if (reply.value() != QDBusConnectionInterface::ServiceRegistered)
        logger_.error("No automation until process %u gives the name %s back",
                      daemon.servicePid(name_).value(), qUtf8Printable(name_));
}

QString IntentService::introspect(const QString& path) const {
    return path == intents::kPath ? QString::fromLatin1(kIntrospection) : QString();
}

bool IntentService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const auto* const method = std::ranges::find(methods, message.member(), &Method::name);
    const bool isKnown = method != std::end(methods);
    // Members that name no interface, and are none of ours, may be those that every object has.
    const bool isOurs =
        message.interface() == intents::kInterface || (message.interface().isEmpty() && isKnown);
    if (!isOurs)
        return false;
    const QDBusMessage reply = isKnown ? answer(*method, message) : unknownMethod(message);
    if (message.isReplyRequired())
        connection.send(reply);
    return true;
}

QDBusMessage IntentService::answer(const Method& method, const QDBusMessage& call) const {
    if (!call.signature().isEmpty() && call.signature() != method.takes)
        return wrongArguments(call, method.takes);
    return call.createReply((this->*method.run)(call.arguments()));
}

QVariant IntentService::setVolume(const QVariantList& arguments) const {
    if (arguments.isEmpty())
        return dialog(intents_.setVolume(std::nullopt));
    return dialog(intents_.setVolume(arguments.front().toLongLong()));
}

QVariant IntentService::toggleMute(const QVariantList& /*arguments*/) const {
    return dialog(intents_.toggleMute());
}

QVariant IntentService::listAudioApps(const QVariantList& /*arguments*/) const {
    return dialog(intents_.listAudioApps());
}

QVariant IntentService::listShortcuts(const QVariantList& /*arguments*/) const {
    IntentShortcutRecords records;
    for (const IntentShortcut& shortcut : intents_.shortcuts)
        records.push_back(recordOf(shortcut));
    return QVariant::fromValue(records);
}

} // namespace orvanta
