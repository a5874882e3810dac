#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>

namespace orvanta::test {

/// A PipeWire server with session manager and Pulse bridge of the test's own, in a directory of its
/// own, with no device but those the test makes. While it lives, the environment of this process
/// names it, so the code under test and every program started from here talk to it.
class PrivateAudioServer {
public:
    /// Starts everything and waits until it answers. Throws std::runtime_error with the reason and
    /// the end of the logs when it does not.
    PrivateAudioServer();
    PrivateAudioServer(const PrivateAudioServer&) = delete;
    PrivateAudioServer& operator=(const PrivateAudioServer&) = delete;
    ~PrivateAudioServer();

    /// They stand still, as under a debugger, until they are let go on.
    void freezeServer();
    void thawServer();
    void freezeSessionManager();
    void thawSessionManager();

    /// The daemons' own way to die and to come back, one by one.
    void killServer();
    void startServer();
    void killSessionManager();
    void startSessionManager();
    void killPulseBridge();
    void startPulseBridge();

    /// False also when it has died of itself.
    [[nodiscard]] bool isSessionManagerRunning() { return sessionManager_->isRunning(); }

    [[nodiscard]] const ChildProcess& server() const { return *server_; }

    /// For files of the test that shall vanish with the server.
    [[nodiscard]] const std::filesystem::path& directory() const { return root_.path(); }

    /// How many lines of the session manager's log have this text in them.
    [[nodiscard]] std::size_t sessionManagerSaid(const std::string& text) const;

    /// The last lines of each daemon's log.
    [[nodiscard]] std::string logTail() const;

private:
    [[nodiscard]] std::filesystem::path log(const std::string& daemon) const;
    void waitUntil(const std::string& what, const std::function<bool()>& isSo,
                   const std::unique_ptr<ChildProcess>& daemon) const;

    TemporaryDirectory root_;
    ScopedEnvironment environment_;
    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<ChildProcess> sessionManager_;
    std::unique_ptr<ChildProcess> pulseBridge_;
};

} // namespace orvanta::test
