#include "app/demo/DemoSystem.h"
#include "app/desktop/runProgram.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <cstdlib>
#include <memory>
#include <string>

namespace orvanta {
namespace {

std::string fromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

void trustOnly(const std::string& certificates) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(
        QSslCertificate::fromPath(QString::fromStdString(certificates)));
    QSslConfiguration::setDefaultConfiguration(configuration);
}

ProgramIdentity withFeed() {
    ProgramIdentity identity = ProgramIdentity::ofDemo();
    identity.updateFeed = {.url = fromEnvironment("ORVANTA_TEST_FEED_URL"),
                           .publicKey = fromEnvironment("ORVANTA_TEST_FEED_KEY")};
    return identity;
}

std::unique_ptr<SoundSystem> makeDemoSystem(const ProgramIdentity& identity, RunLoop& mainRunLoop,
                                            SystemLog& /*log*/) {
    // Once there is a toolkit, and before it is asked for anything.
    trustOnly(fromEnvironment("ORVANTA_TEST_CERTIFICATE"));
    return DemoSystem::started(mainRunLoop, identity.home);
}

} // namespace
} // namespace orvanta

/// The demonstration, with updates from a server of the test's own. The programs that people get
/// are built with their feed and its key, and nothing can point them to another.
int main(int argc, char** argv) {
    return orvanta::runProgram(argc, argv, &orvanta::withFeed, &orvanta::makeDemoSystem);
}
