#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

#include <QDBusConnection>
#include <QString>
#include <memory>

namespace orvanta::test {

/// A session bus of the test's own, on which nothing is but what the test puts there.
class PrivateBus {
public:
    /// Throws std::runtime_error when it does not start.
    PrivateBus();

    [[nodiscard]] const QString& address() const { return address_; }

private:
    TemporaryDirectory directory_;
    std::unique_ptr<ChildProcess> daemon_;
    QString address_;
};

/// A connection to a bus, as a program of its own would have it.
class BusConnection {
public:
    explicit BusConnection(const PrivateBus& bus);
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection();

    [[nodiscard]] QDBusConnection& operator*() { return connection_; }

    [[nodiscard]] QDBusConnection* operator->() { return &connection_; }

private:
    QDBusConnection connection_;
};

} // namespace orvanta::test
