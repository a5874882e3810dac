#pragma once

#include "tests/support/ChildProcess.h"

#include <filesystem>
#include <ostream>
#include <string>

namespace orvanta::test {

/// The players that people have, each with its own way to the server.
enum class PlayerKind {
    pwPlay, ///< the server's own protocol
    paplay, ///< the Pulse bridge
    aplay,  ///< ALSA
    sox,    ///< ALSA, through another program
    mpv,    ///< the server's own protocol; can be told things
};

/// One of them playing a file.
class RealPlayer {
public:
    /// Starts to play. `directory` takes its log and its control socket.
    RealPlayer(PlayerKind kind, const std::filesystem::path& file,
               const std::filesystem::path& directory);

    [[nodiscard]] pid_t pid() const { return program_.pid(); }

    // Only mpv can do these.
    void pause() const;
    void resume() const;
    /// Closes its stream and opens another.
    void reopen() const;

    void stop() { program_.stop(); }

    void kill() { program_.kill(); }

    [[nodiscard]] bool isRunning() { return program_.isRunning(); }

private:
    void control(const std::string& command) const;

    std::filesystem::path socket_;
    ChildProcess program_;
};

/// "pw-play", …
std::string nameOf(PlayerKind kind);

inline std::ostream& operator<<(std::ostream& stream, PlayerKind kind) {
    return stream << nameOf(kind);
}

} // namespace orvanta::test
