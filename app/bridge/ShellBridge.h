#pragma once

#include "app/shell/BundleInfo.h"
#include "app/shell/OnboardingTrigger.h"
#include "app/shell/ShellWindows.h"
#include "core/services/CrashReporter.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <string>

namespace orvanta {

/// The program as the views see it: what it is, and what it does beside mixing.
class ShellBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one.")
    /// "v1.0.0" and "Version 1.0.0 (1)".
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString longVersionText READ longVersionText CONSTANT)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    Q_PROPERTY(bool hasCrashReports READ hasCrashReports NOTIFY hasCrashReportsChanged)

public:
    /// What the program does when it is asked to.
    struct Actions {
        std::function<void()> checkForUpdates;
        std::function<void(const std::string& url)> openURL;
        std::function<void()> quit;
    };

    /// What is referred to must outlive it.
    ShellBridge(BundleInfo bundle, ShellWindows& windows, OnboardingTrigger& onboarding,
                const CrashReporter& crashReporter, Actions actions);

    [[nodiscard]] QString versionText() const;
    [[nodiscard]] QString longVersionText() const;

    [[nodiscard]] bool canCheckForUpdates() const { return canCheckForUpdates_; }

    void setCanCheckForUpdates(bool can);

    Q_INVOKABLE void checkForUpdates() { actions_.checkForUpdates(); }

    /// As last looked for.
    [[nodiscard]] bool hasCrashReports() const { return hasCrashReports_; }

    Q_INVOKABLE void lookForCrashReports();
    /// Opens a mail with what there is, and puts it aside.
    Q_INVOKABLE void sendCrashReport();

    /// A window by its identifier.
    Q_INVOKABLE void openFromPanel(const QString& identifier);

    Q_INVOKABLE void completeOnboarding() { onboarding_.complete(); }

    Q_INVOKABLE void quit() { actions_.quit(); }

Q_SIGNALS:
    void canCheckForUpdatesChanged();
    void hasCrashReportsChanged();

private:
    const BundleInfo bundle_;
    ShellWindows& windows_;
    OnboardingTrigger& onboarding_;
    const CrashReporter& crashReporter_;
    const Actions actions_;
    bool canCheckForUpdates_ = false;
    bool hasCrashReports_ = false;
};

} // namespace orvanta
