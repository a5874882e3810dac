#include "tests/platform/qt/support/PrivateBus.h"

#include "tests/platform/qt/support/EventLoop.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace orvanta::test {

namespace {

/// Without the folders of services that a desktop's bus starts by itself.
constexpr auto kConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=DIRECTORY</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

QDBusConnection newConnection(const QString& address) {
    startQt();
    static int count = 0;
    return QDBusConnection::connectToBus(address, QStringLiteral("test%1").arg(++count));
}

} // namespace

PrivateBus::PrivateBus() {
    std::string configuration = kConfiguration;
    const std::string placeholder = "DIRECTORY";
    configuration.replace(configuration.find(placeholder), placeholder.size(),
                          directory_.path().string());
    const auto file = directory_.path() / "bus.conf";
    std::ofstream(file) << configuration;
    daemon_ = std::make_unique<ChildProcess>(
        ChildProcess::Launch{.command = {"dbus-daemon", "--config-file=" + file.string(),
                                         "--nofork", "--nopidfile", "--print-address=1"},
                             .isTalkedTo = true});
    const auto address = daemon_->readLine(Seconds(30));
    if (!address)
        throw std::runtime_error("dbus-daemon does not start");
    address_ = QString::fromStdString(*address);
}

BusConnection::BusConnection(const PrivateBus& bus) : connection_(newConnection(bus.address())) {
    if (!connection_.isConnected())
        throw std::runtime_error("the bus does not answer");
}

BusConnection::~BusConnection() {
    QDBusConnection::disconnectFromBus(connection_.name());
}

} // namespace orvanta::test
