#include "platform/qt/desktop/DesktopFileViewer.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QStringList>
#include <QUrl>
#include <utility>

namespace orvanta {
namespace {

QString addressOf(const std::filesystem::path& path) {
    const QString name = QFile::decodeName(QByteArray::fromStdString(path.string()));
    return QUrl::fromLocalFile(name).toString(QUrl::FullyEncoded);
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
    const auto openFolder = [openAddress = openAddress_, folder = file.parent_path()] {
        if (openAddress)
            openAddress(addressOf(folder));
    };
    // Without a bus the answer is there at once, and no watcher would be told of it.
    if (answer.isFinished()) {
        if (answer.isError())
            openFolder();
        return;
    }
    // Owns itself until the answer.
    auto* const watcher = new QDBusPendingCallWatcher(answer);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, openFolder] {
        if (watcher->isError())
            openFolder();
        watcher->deleteLater();
    });
}

} // namespace orvanta
