#pragma once

#include "tests/platform/qt/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <vector>

namespace orvanta::test {

/// A desktop's watcher of icons on a bus, which does as the test tells it. It answers from the
/// event loop.
class FakeTray final : public QDBusVirtualObject {
public:
    /// On the bus from now on. `hasHost` is whether somebody draws the icons.
    FakeTray(const PrivateBus& bus, bool hasHost);

    /// Somebody who draws icons comes or goes, and the watcher says so.
    void setHost(bool hasHost);

    /// Keeps the answers to questions back until it is told to give them.
    bool isSlow = false;
    void answer();

    [[nodiscard]] std::size_t waitingQuestions() const { return questions_.size(); }

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    BusConnection connection_;
    bool hasHost_;
    std::vector<QDBusMessage> questions_;
};

} // namespace orvanta::test
