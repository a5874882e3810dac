#include "app/bridge/ShellBridge.h"

#include "app/bridge/Text.h"
#include "app/popover/PanelText.h"
#include "app/shell/openFromPanel.h"

#include <utility>

namespace orvanta {

ShellBridge::ShellBridge(BundleInfo bundle, ShellWindows& windows, OnboardingTrigger& onboarding,
                         const CrashReporter& crashReporter, Actions actions)
    : bundle_(std::move(bundle)),
      windows_(windows),
      onboarding_(onboarding),
      crashReporter_(crashReporter),
      actions_(std::move(actions)) {}

QString ShellBridge::versionText() const {
    return qText(panelText::version(bundle_.shortVersion));
}

QString ShellBridge::longVersionText() const {
    return QStringLiteral("Version %1 (%2)")
        .arg(qText(bundle_.shortVersion), qText(bundle_.version));
}

void ShellBridge::setCanCheckForUpdates(bool can) {
    if (std::exchange(canCheckForUpdates_, can) != can)
        Q_EMIT canCheckForUpdatesChanged();
}

void ShellBridge::lookForCrashReports() {
    const bool has = crashReporter_.hasUnsentReports();
    if (std::exchange(hasCrashReports_, has) != has)
        Q_EMIT hasCrashReportsChanged();
}

void ShellBridge::sendCrashReport() {
    if (const auto url = crashReporter_.composeReportURL())
        actions_.openURL(*url);
    crashReporter_.markReportsSent();
    lookForCrashReports();
}

void ShellBridge::openFromPanel(const QString& identifier) {
    orvanta::openFromPanel(windows_, identifier.toStdString());
}

} // namespace orvanta
