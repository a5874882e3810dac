#pragma once

#include "core/platform/FileViewer.h"

#include <QDBusConnection>
#include <QString>
#include <functional>

namespace orvanta {

/// Asks the desktop's file manager over the session bus (org.freedesktop.FileManager1). Where none
/// answers, the file's folder is opened as any address is.
class DesktopFileViewer final : public FileViewer {
public:
    /// Opens an address; the toolkit's own way in the program.
    using OpenAddress = std::function<void(const QString&)>;

    DesktopFileViewer(QDBusConnection sessionBus, OpenAddress openAddress);

    void activateFileViewerSelecting(const std::filesystem::path& file) override;

private:
    QDBusConnection bus_;
    const OpenAddress openAddress_;
};

} // namespace orvanta
