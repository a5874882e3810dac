#include "platform/qt/session/SingleInstance.h"

#include "platform/qt/session/ShowRequest.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <utility>

namespace orvanta {

namespace fs = std::filesystem;

namespace {

/// Between the first one's lock and its socket lie a few instructions.
constexpr unsigned long kPauseBetweenAttemptsMs = 10;

std::chrono::milliseconds inMilliseconds(Seconds time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time);
}

} // namespace

SingleInstance::SingleInstance(Settings settings, std::function<void()> show)
    : settings_(std::move(settings)),
      show_(std::move(show)),
      socket_(QString::fromStdString((settings_.folder / (settings_.name + ".socket")).string())),
      lock_(settings_.folder / (settings_.name + ".instance")),
      start_(settle()) {
    if (start_ == Start::first)
        listen();
}

SingleInstance::Start SingleInstance::settle() {
    const QDeadlineTimer deadline(inMilliseconds(settings_.patience));
    while (lock_.take() == SessionLock::State::taken) {
        const auto result = requestShow(socket_, deadline);
        if (result == ShowRequestResult::heard)
            return Start::heard;
        if (result == ShowRequestResult::unanswered || deadline.hasExpired())
            return Start::unanswered;
        QThread::msleep(kPauseBetweenAttemptsMs);
    }
    return Start::first;
}

void SingleInstance::listen() {
    // What lies there was left by one that died: those who live have the lock.
    QLocalServer::removeServer(socket_);
    server_.emplace();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    showTimer_.setSingleShot(true);
    QObject::connect(&showTimer_, &QTimer::timeout, show_);
    QObject::connect(&*server_, &QLocalServer::newConnection, &*server_, [this] {
        while (QLocalSocket* const visitor = server_->nextPendingConnection())
            welcome(*visitor);
    });
    server_->listen(socket_);
}

void SingleInstance::welcome(QLocalSocket& visitor) {
    visitor.setReadBufferSize(sizeof(kShowRequest));
    QObject::connect(&visitor, &QLocalSocket::disconnected, &visitor, &QObject::deleteLater);
    QObject::connect(&visitor, &QLocalSocket::readyRead, &visitor,
                     [this, &visitor] { hear(visitor); });
    // Nobody stays without a word.
    auto* const patience = new QTimer(&visitor);
    patience->setSingleShot(true);
    QObject::connect(patience, &QTimer::timeout, &visitor, [&visitor] { visitor.abort(); });
    patience->start(inMilliseconds(settings_.patience));
    hear(visitor);
}

void SingleInstance::hear(QLocalSocket& visitor) {
    const QByteArray wanted(kShowRequest);
    const QByteArray said = visitor.peek(wanted.size());
    if (!wanted.startsWith(said)) {
        visitor.abort();
        return;
    }
    if (said != wanted)
        return;
    // Once for each visitor, whatever else it says.
    QObject::disconnect(&visitor, &QLocalSocket::readyRead, nullptr, nullptr);
    visitor.write(kShowAnswer);
    visitor.flush();
    visitor.disconnectFromServer();
    // Later: it may end this object, and the visitor with it.
    showTimer_.start();
}

fs::path sessionFolder(const char* xdgRuntimeDir, const fs::path& settingsFolder) {
    const fs::path session = xdgRuntimeDir != nullptr ? xdgRuntimeDir : "";
    return session.is_absolute() ? session : settingsFolder;
}

} // namespace orvanta
