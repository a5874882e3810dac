#include "platform/qt/hotkeys/PortalHotKeyCenter.h"

#include <QDBusObjectPath>
#include <QVariant>
#include <algorithm>
#include <utility>

namespace orvanta {
namespace {

constexpr auto kSessionInterface = "org.freedesktop.portal.Session";

/// The desktop keeps what the user chose for a shortcut under this, from run to run.
QString shortcutIDOf(const KeyCombination& combination) {
    return QStringLiteral("key-%1-modifiers-%2")
        .arg(combination.keyCode)
        .arg(combination.modifiers);
}

/// Portals tell the session as a string or as a path.
QString sessionOf(const QVariantMap& results) {
    const QVariant handle = results.value(QStringLiteral("session_handle"));
    if (handle.canConvert<QDBusObjectPath>())
        return handle.value<QDBusObjectPath>().path();
    return handle.toString();
}

} // namespace

PortalHotKeyCenter::PortalHotKeyCenter(QDBusConnection bus, SystemLog& log,
                                       HotKeyDescriptions descriptions)
    : bus_(std::move(bus)),
      logger_(log, "hotkeys"),
      descriptions_(std::move(descriptions)),
      ownerWatcher_(QLatin1String(PortalRequest::kService), bus_,
                    QDBusServiceWatcher::WatchForOwnerChange) {
    registerPortalShortcutTypes();
    connect(&ownerWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*service*/, const QString& /*oldOwner*/,
                   const QString& newOwner) { followOwner(newOwner); });
    bindingTimer_.setSingleShot(true);
    connect(&bindingTimer_, &QTimer::timeout, this, [this] { bind(); });
}

PortalHotKeyCenter::~PortalHotKeyCenter() {
    closeSession();
}

OSStatus PortalHotKeyCenter::installHandler(Handler handler, HandlerReference& outReference) {
    outReference = handlers_.add(std::move(handler));
    return noErr;
}

void PortalHotKeyCenter::removeHandler(HandlerReference reference) {
    handlers_.remove(reference);
}

OSStatus PortalHotKeyCenter::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            const HotKeyID& id, Reference& outReference) {
    const KeyCombination combination{keyCode, modifiers};
    if (!isKnown(combination))
        return eventHotKeyInvalidErr;
    for (const auto& [reference, hotKey] : hotKeys_)
        if (hotKey.combination == combination)
            return eventHotKeyExistsErr;
    outReference = Reference{++lastReference_};
    hotKeys_.emplace(outReference, HotKey{combination, id});
    bindSoon();
    return noErr;
}

void PortalHotKeyCenter::unregisterHotKey(Reference reference) {
    if (hotKeys_.erase(reference) != 0)
        bindSoon();
}

void PortalHotKeyCenter::bindSoon() {
    bindingTimer_.start();
}

void PortalHotKeyCenter::bind() {
    // What is on its way to a session takes the combinations as they are when it gets there.
    if (stage_ == Stage::findingPortal || stage_ == Stage::openingSession)
        return;
    closeSession();
    if (hotKeys_.empty())
        return;
    // A call without a bus would never be answered.
    if (bus_.isConnected())
        findPortal();
    else
        fail("there is no session bus");
}

/// Asks for something that only a portal with global shortcuts can answer, which starts one if need
/// be, and learns from the answer which one it is.
void PortalHotKeyCenter::findPortal() {
    stage_ = Stage::findingPortal;
    QDBusMessage question = QDBusMessage::createMethodCall(
        QLatin1String(PortalRequest::kService), QLatin1String(PortalRequest::kPath),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QLatin1String(PortalRequest::kInterface) << QStringLiteral("version");
    portalQuestion_ = std::make_unique<QDBusPendingCallWatcher>(bus_.asyncCall(question));
    connect(portalQuestion_.get(), &QDBusPendingCallWatcher::finished, this,
            [this] { receivePortal(portalQuestion_->reply()); });
}

void PortalHotKeyCenter::receivePortal(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage) {
        fail(answer.errorMessage().toStdString());
        return;
    }
    portal_ = answer.service();
    openSession();
}

void PortalHotKeyCenter::openSession() {
    stage_ = Stage::openingSession;
    request_ = std::make_unique<PortalRequest>(
        bus_, portal_, QStringLiteral("CreateSession"), QVariantList(),
        QVariantMap{{QStringLiteral("session_handle_token"), PortalRequest::newToken()}},
        [this](const PortalRequest::Answer& answer) { receiveSession(answer); });
}

void PortalHotKeyCenter::receiveSession(const PortalRequest::Answer& answer) {
    session_ = sessionOf(answer.results);
    if (answer.failure || session_.isEmpty()) {
        fail(answer.failure.value_or("the desktop gave no session"));
        return;
    }
    listenToSession();
    if (hotKeys_.empty())
        closeSession();
    else
        bindShortcuts();
}

void PortalHotKeyCenter::bindShortcuts() {
    stage_ = Stage::binding;
    const QString noParentWindow;
    request_ = std::make_unique<PortalRequest>(
        bus_, portal_, QStringLiteral("BindShortcuts"),
        QVariantList{QVariant::fromValue(QDBusObjectPath(session_)),
                     QVariant::fromValue(shortcuts()), noParentWindow},
        QVariantMap(), [this](const PortalRequest::Answer& answer) { receiveShortcuts(answer); });
}

void PortalHotKeyCenter::receiveShortcuts(const PortalRequest::Answer& answer) {
    if (answer.failure)
        fail(*answer.failure);
    else
        stage_ = Stage::bound;
}

PortalShortcuts PortalHotKeyCenter::shortcuts() const {
    PortalShortcuts shortcuts;
    for (const auto& [reference, hotKey] : hotKeys_) {
        const auto words = descriptions_.find(hotKey.combination);
        const std::string description =
            words == descriptions_.end() ? nameOf(hotKey.combination) : words->second;
        shortcuts.push_back(
            {.id = shortcutIDOf(hotKey.combination),
             .properties = {{QStringLiteral("description"), QString::fromStdString(description)},
                            {QStringLiteral("preferred_trigger"),
                             QString::fromStdString(triggerOf(hotKey.combination))}}});
    }
    return shortcuts;
}

void PortalHotKeyCenter::receiveActivation(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (arguments.size() < 2 || arguments[0].value<QDBusObjectPath>().path() != session_)
        return;
    const QString shortcut = arguments[1].toString();
    const auto pressed = std::find_if(hotKeys_.begin(), hotKeys_.end(), [&](const auto& each) {
        return shortcutIDOf(each.second.combination) == shortcut;
    });
    if (pressed != hotKeys_.end())
        handlers_.tell(pressed->second.id);
}

/// Not asked for again until the combinations change: the desktop, or its user, will not have them.
void PortalHotKeyCenter::receiveSessionEnd() {
    forgetSession();
    logger_.error("Lost the global shortcuts: the desktop ended their session");
}

void PortalHotKeyCenter::followOwner(const QString& newOwner) {
    // One that comes while it is being looked for was started by that.
    if (stage_ == Stage::findingPortal || (!newOwner.isEmpty() && newOwner == portal_))
        return;
    forgetSession();
    portal_.clear();
    if (!newOwner.isEmpty() && !hotKeys_.empty())
        bindSoon();
}

void PortalHotKeyCenter::listenToSession() {
    bus_.connect(portal_, QLatin1String(PortalRequest::kPath),
                 QLatin1String(PortalRequest::kInterface), QStringLiteral("Activated"), this,
                 SLOT(receiveActivation(QDBusMessage)));
    bus_.connect(portal_, session_, QLatin1String(kSessionInterface), QStringLiteral("Closed"),
                 this, SLOT(receiveSessionEnd()));
}

void PortalHotKeyCenter::closeSession() {
    if (!session_.isEmpty())
        bus_.send(QDBusMessage::createMethodCall(
            portal_, session_, QLatin1String(kSessionInterface), QStringLiteral("Close")));
    forgetSession();
}

void PortalHotKeyCenter::forgetSession() {
    stage_ = Stage::idle;
    portalQuestion_.reset();
    request_.reset();
    if (session_.isEmpty())
        return;
    bus_.disconnect(portal_, QLatin1String(PortalRequest::kPath),
                    QLatin1String(PortalRequest::kInterface), QStringLiteral("Activated"), this,
                    SLOT(receiveActivation(QDBusMessage)));
    bus_.disconnect(portal_, session_, QLatin1String(kSessionInterface), QStringLiteral("Closed"),
                    this, SLOT(receiveSessionEnd()));
    session_.clear();
}

void PortalHotKeyCenter::fail(const std::string& reason) {
    closeSession();
    logger_.error("No global shortcuts: %s", reason.c_str());
}

} // namespace orvanta
