#include "platform/qt/desktop/DesktopFileViewer.h"

#include <QByteArray>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <utility>

namespace orvanta {
namespace {

/// Byte by byte: the name of a file need not be text in any encoding.
QString addressOf(const std::filesystem::path& path) {
    const QByteArray name = QByteArray::fromStdString(path.native());
    return QLatin1String("file://") + QLatin1String(name.toPercentEncoding("/"));
}

} // namespace

DesktopFileViewer::DesktopFileViewer(QDBusConnection sessionBus, OpenAddress openAddress)
    : bus_(std::move(sessionBus)), openAddress_(std::move(openAddress)) {}

void DesktopFileViewer::activateFileViewerSelecting(const std::filesystem::path& file) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(addressOf(file)) << QString();
    const QDBusPendingCall answer = bus_.asyncCall(call);
    const auto openFolder = [this, folder = file.parent_path()] {
        openAddress_(addressOf(folder));
    };
    // Without a bus the answer is there at once, and no watcher would be told of it.
    if (answer.isFinished()) {
        if (answer.isError())
            openFolder();
        return;
    }
    auto* const watcher = new QDBusPendingCallWatcher(answer, &questions_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, openFolder] {
        if (watcher->isError())
            openFolder();
        watcher->deleteLater();
    });
}

} // namespace orvanta
