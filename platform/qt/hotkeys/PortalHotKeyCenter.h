#pragma once

#include "core/platform/HotKeyCenter.h"
#include "core/platform/Logger.h"
#include "platform/qt/hotkeys/HotKeyHandlers.h"
#include "platform/qt/hotkeys/KeyCombination.h"
#include "platform/qt/hotkeys/PortalRequest.h"
#include "platform/qt/hotkeys/PortalShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace orvanta {

/// Hot keys as the desktop's portal offers them, the only way under Wayland. The desktop may ask
/// the user, who may choose other keys; what comes of it is known later, so a registration answers
/// `noErr` and what fails is logged. Presses are told from the event loop of the thread that makes
/// it, which is also the one for its operations; none waits for the bus.
class PortalHotKeyCenter final : public QObject, public HotKeyCenter {
    Q_OBJECT

public:
    /// `descriptions` are what the desktop shows; a combination without one shows its name.
    PortalHotKeyCenter(QDBusConnection bus, SystemLog& log, HotKeyDescriptions descriptions = {});
    ~PortalHotKeyCenter() override;

    OSStatus installHandler(Handler handler, HandlerReference& outReference) override;
    void removeHandler(HandlerReference reference) override;

    /// `eventHotKeyExistsErr` when this program has the combination already,
    /// `eventHotKeyInvalidErr` when no keyboard has it.
    OSStatus registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, const HotKeyID& id,
                            Reference& outReference) override;
    void unregisterHotKey(Reference reference) override;

    // Signals of the bus.
    Q_SLOT void receiveActivation(const QDBusMessage& signal);
    Q_SLOT void receiveSessionEnd();

private:
    struct HotKey {
        KeyCombination combination;
        HotKeyID id;
    };

    enum class Stage { idle, findingPortal, openingSession, binding, bound };

    /// All changes up to the next turn of the event loop go to the portal together: what is bound
    /// in a session stays, so each change is a new session.
    void bindSoon();
    void bind();
    void findPortal();
    void receivePortal(const QDBusMessage& answer);
    void openSession();
    void receiveSession(const PortalRequest::Answer& answer);
    void bindShortcuts();
    void receiveShortcuts(const PortalRequest::Answer& answer);
    [[nodiscard]] PortalShortcuts shortcuts() const;

    void followOwner(const QString& newOwner);
    void listenToSession();
    void closeSession();
    /// As if there had never been a session, without a word to the portal.
    void forgetSession();
    void fail(const std::string& reason);

    QDBusConnection bus_;
    const Logger logger_;
    const HotKeyDescriptions descriptions_;
    QDBusServiceWatcher ownerWatcher_;
    QTimer bindingTimer_;
    HotKeyHandlers handlers_;
    std::map<Reference, HotKey> hotKeys_;
    std::uint64_t lastReference_ = 0;

    Stage stage_ = Stage::idle;
    /// The portal's own name on the bus, which tells one run of it from the next.
    QString portal_;
    QString session_;
    std::unique_ptr<QDBusPendingCallWatcher> portalQuestion_;
    std::unique_ptr<PortalRequest> request_;
};

} // namespace orvanta
