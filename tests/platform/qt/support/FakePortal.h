#pragma once

#include "tests/platform/qt/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <map>
#include <string>
#include <vector>

namespace orvanta::test {

/// A desktop's portal with global shortcuts, which does as the test tells it. It answers from the
/// event loop.
class FakePortal final : public QDBusVirtualObject {
public:
    struct Shortcut {
        std::string id;
        std::string description;
        std::string trigger;

        bool operator==(const Shortcut&) const = default;
    };

    /// A session as a program has it.
    struct Session {
        std::string path;
        /// Of each time that shortcuts were bound.
        std::vector<std::vector<Shortcut>> bindings;
        bool isClosed = false;
    };

    explicit FakePortal(const PrivateBus& bus);

    // What it does.

    /// 0 to grant, else as the user or the desktop refuses.
    uint answerToSession = 0;
    uint answerToBinding = 0;
    bool hasGlobalShortcuts = true;
    bool refusesCalls = false;
    /// Keeps the user's answer to a binding back.
    bool isUndecided = false;
    bool answersBeforeItReturns = false;
    bool tellsSessionsAsPaths = false;

    // What was asked of it.

    std::vector<Session> sessions;
    /// Questions that were given up before they were answered.
    int closedRequests = 0;

    [[nodiscard]] int openSessions() const;
    /// Of the newest session; none when there is none, or none was bound.
    [[nodiscard]] std::vector<Shortcut> bound() const;

    // What happens on the desktop.

    /// The user presses a shortcut of the newest session.
    void activate(const std::string& shortcut);
    /// The same, told of a session by its path.
    void activate(const std::string& shortcut, const std::string& session);
    /// The desktop ends the newest session.
    void endSession();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    bool handleProperty(const QDBusMessage& message);
    void createSession(const QDBusMessage& message);
    void bindShortcuts(const QDBusMessage& message);
    void close(const QDBusMessage& message);
    void answer(const QDBusMessage& call, uint response, const QVariantMap& results);
    void send(const QDBusMessage& message);

    BusConnection connection_;
    /// Whom the signals are for.
    QString program_;
};

} // namespace orvanta::test
