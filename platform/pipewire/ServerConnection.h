#pragma once

#include "core/platform/Logger.h"
#include "platform/pipewire/ControlLoop.h"

#include <spa/utils/hook.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>

struct pw_core;

namespace orvanta::pipewire {

/// What happens to the connection. Called with the lock held, on the control thread.
class ConnectionListener {
public:
    ConnectionListener() = default;
    ConnectionListener(const ConnectionListener&) = delete;
    ConnectionListener& operator=(const ConnectionListener&) = delete;
    virtual ~ConnectionListener() = default;

    /// A server was reached: `core` takes requests.
    virtual void serverConnected(pw_core* core) = 0;
    /// The server has told everything that was there when it was reached.
    virtual void serverAnswered() = 0;
    /// The server has stood still and goes on: `isAnswering` was false for a while.
    virtual void serverAnswersAgain() = 0;
    /// The server is gone. `core` is still there to destroy proxies with and no use otherwise.
    virtual void serverLost() = 0;
};

/// Keeps a connection to the server, and tries again for as long as there is none.
class ServerConnection {
public:
    ServerConnection(ControlLoop& loop, std::string remoteName, std::string applicationName,
                     ConnectionListener& listener, const Logger& logger);
    ~ServerConnection();
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;

    /// False where the system had no descriptors left for the timers: then no server is reached.
    [[nodiscard]] bool isUsable() const {
        return retry_.isUsable() && loss_.isUsable() && silence_.isUsable();
    }

    /// Null while there is no server.
    [[nodiscard]] pw_core* core() const { return core_; }

    /// Whether the server has told everything that was there when it was reached.
    [[nodiscard]] bool hasAnswered() const { return core_ != nullptr && roundsLeft_ == 0; }

    /// The same, and whether it still does answer: a server may stand still without being gone.
    [[nodiscard]] bool isAnswering() const { return hasAnswered() && !isSilent_; }

    /// Whether there is nothing to wait for: the server has answered, or there is none that does.
    [[nodiscard]] bool isSettled() const {
        return attempted_ && (core_ == nullptr || hasAnswered() || isSilent_);
    }

    /// A question to one server. Its answer says that everything is done that was asked before it.
    struct Question {
        std::uint64_t connection = 0;
        std::uint64_t number = 0;
    };

    /// Asks the server for a sign of life, unless it owes one. Where none comes for a second and a
    /// half, `isAnswering` turns false until one comes after all.
    void ask();

    /// The same, but asks even if the server still owes an answer to an earlier question.
    Question askAnew();

    /// False also if the server that was asked is gone.
    [[nodiscard]] bool isAnswered(const Question& question) const {
        return core_ != nullptr && question.connection == connections_ &&
               question.number <= answered_;
    }

    /// How many times a server was reached.
    [[nodiscard]] std::uint64_t connections() const { return connections_; }

    /// What the server does by default, in Hz; 0 while it is not known.
    [[nodiscard]] std::uint32_t defaultRate() const { return defaultRate_; }

private:
    friend struct ConnectionEvents;

    void connect();
    void lose();
    void roundDone(int sequence);
    void probe();
    void answered(int sequence);
    void silent();
    void failed(std::uint32_t id, int result, const char* message);

    ControlLoop& loop_;
    std::string remoteName_;
    std::string applicationName_;
    ConnectionListener& listener_;
    const Logger& logger_;
    ControlTimer retry_;
    ControlTimer loss_;
    /// Runs while the server owes an answer.
    ControlTimer silence_;
    /// The sequence numbers of the unanswered questions, in the order in which they were asked.
    std::deque<int> questions_;
    /// How many questions were answered on this connection.
    std::uint64_t answered_ = 0;
    /// The server has reported an error about the connection and not answered since.
    bool isDoubtful_ = false;
    bool isSilent_ = false;
    int failures_ = 0;
    std::uint64_t connections_ = 0;
    pw_core* core_ = nullptr;
    spa_hook coreHook_{};
    bool attempted_ = false;
    bool absenceLogged_ = false;
    int roundsLeft_ = 0;
    int sequence_ = 0;
    std::uint32_t defaultRate_ = 0;
};

} // namespace orvanta::pipewire
