#pragma once

#include "core/platform/FileViewer.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <functional>

namespace orvanta {

/// Asks the desktop's file manager over the session bus (org.freedesktop.FileManager1). Where none
/// answers, the file's folder is opened as any address is; not after the viewer's end.
class DesktopFileViewer final : public FileViewer {
public:
    /// Opens an address; the toolkit's own way in the program.
    using OpenAddress = std::function<void(const QString&)>;

    DesktopFileViewer(QDBusConnection sessionBus, OpenAddress openAddress);

    void activateFileViewerSelecting(const std::filesystem::path& file) override;

private:
    QDBusConnection bus_;
    const OpenAddress openAddress_;
    /// Owns the questions that are not answered yet.
    QObject questions_;
};

} // namespace orvanta
