#pragma once

#include "core/platform/RunLoop.h"
#include "platform/qt/session/SessionLock.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QString>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace orvanta {

/// One running program in a user's session. Its first start owns the session from then on; every
/// other one asks the first to show itself, and is to end. They speak over a socket in the
/// session's folder that only the user can open, so no bus is needed; who the first one is a lock
/// beside it decides, which outlives no crash. Belongs to the thread that makes it, in which an
/// event loop runs once it is the first.
class SingleInstance {
public:
    enum class Start {
        first,     ///< There is no other, or the folder lets nobody know.
        heard,     ///< The first one has been asked to show itself.
        unanswered ///< There is a first one, and it does not answer.
    };

    struct Settings {
        /// See `sessionFolder`.
        std::filesystem::path folder{};
        /// What the program's files there begin with; programs of other names are others.
        std::string name = {};
        /// How long another start waits for the first one's answer, and that one for a question.
        Seconds patience{3.0};
    };

    /// `show` is called from the event loop after each later start, once for several at one moment.
    /// It may end this object.
    SingleInstance(Settings settings, std::function<void()> show);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance() = default;

    [[nodiscard]] Start start() const { return start_; }

private:
    [[nodiscard]] Start settle();
    void listen();
    void welcome(QLocalSocket& visitor);
    void hear(QLocalSocket& visitor);

    const Settings settings_;
    const std::function<void()> show_;
    const QString socket_;
    SessionLock lock_;
    /// Ends before the lock does: its file is gone when the next first one makes its own.
    std::optional<QLocalServer> server_;
    QTimer showTimer_;
    Start start_;
};

/// The session's own folder, `xdgRuntimeDir`; where that names no absolute one, `settingsFolder`.
[[nodiscard]] std::filesystem::path sessionFolder(const char* xdgRuntimeDir,
                                                  const std::filesystem::path& settingsFolder);

} // namespace orvanta
