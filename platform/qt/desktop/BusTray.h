#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

namespace orvanta {

/// Whether the desktop has a tray that takes icons over the session bus: a watcher of such icons,
/// and somebody who draws them. Does not wait for the bus.
class BusTray final : public QObject {
    Q_OBJECT

public:
    /// `changed` is called from the event loop when it is known, and when that has changed.
    BusTray(QDBusConnection sessionBus, std::function<void()> changed);

    /// Nothing for as long as it is not known.
    [[nodiscard]] std::optional<bool> isThere() const { return isThere_; }

    /// Asks the watcher anew; it answers later. Signals of the bus call it.
    Q_SLOT void ask();

private:
    /// Signals count from whomever: all they do is to make us ask.
    void askAt(const QString& path, const QString& interface, const QString& signal);
    void receiveAnswer();
    void set(bool isThere);

    QDBusConnection bus_;
    const std::function<void()> changed_;
    QDBusServiceWatcher ownerWatcher_;
    std::unique_ptr<QDBusPendingCallWatcher> question_;
    /// For an answer of which nobody will be told.
    QTimer answerTimer_;
    std::optional<bool> isThere_;
};

} // namespace orvanta
