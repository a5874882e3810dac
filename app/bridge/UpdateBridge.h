#pragma once

#include "app/update/SoftwareUpdater.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// What there is to say of updates, as the views see it.
class UpdateBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one.")
    /// Plain text.
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed)
    Q_PROPERTY(bool canDownload READ canDownload NOTIFY changed)
    Q_PROPERTY(bool canShowPage READ canShowPage NOTIFY changed)
    Q_PROPERTY(bool canShowFile READ canShowFile NOTIFY changed)

public:
    /// `updater` must outlive it.
    explicit UpdateBridge(SoftwareUpdater& updater);

    [[nodiscard]] QString sentence() const;
    [[nodiscard]] bool canDownload() const;
    [[nodiscard]] bool canShowPage() const;
    [[nodiscard]] bool canShowFile() const;

    Q_INVOKABLE void download() { updater_.download(); }

    Q_INVOKABLE void showPage() { updater_.showPage(); }

    Q_INVOKABLE void showFile() { updater_.showFile(); }

    Q_INVOKABLE void dismiss() { updater_.dismiss(); }

    /// Whether there is anything to say.
    [[nodiscard]] bool hasNews() const { return news_.kind != UpdateNews::Kind::none; }

Q_SIGNALS:
    void changed();

private:
    SoftwareUpdater& updater_;
    UpdateNews news_;
    Observation observation_;
};

} // namespace orvanta
