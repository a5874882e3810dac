#include "tests/e2e/support/RealPlayer.h"

#include <atomic>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvanta::test {

namespace fs = std::filesystem;

namespace {

fs::path freshSocket(const fs::path& directory) {
    static std::atomic<int> count{0};
    return directory / ("mpv-" + std::to_string(++count));
}

std::vector<std::string> commandOf(PlayerKind kind, const std::string& file,
                                   const std::string& socket) {
    switch (kind) {
    case PlayerKind::pwPlay:
        return {"pw-play", file};
    case PlayerKind::paplay:
        return {"paplay", file};
    case PlayerKind::aplay:
        return {"aplay", "-q", "-D", "pipewire", file};
    case PlayerKind::sox:
        // No dither: what reaches the server is to be the file.
        return {"sox", "-q", "-D", file, "-t", "alsa", "pipewire"};
    case PlayerKind::mpv:
        return {"mpv",        "--no-config",   "--really-quiet",
                "--no-video", "--ao=pipewire", "--input-ipc-server=" + socket,
                file};
    }
    return {};
}

} // namespace

RealPlayer::RealPlayer(PlayerKind kind, const fs::path& file, const fs::path& directory)
    : socket_(freshSocket(directory)),
      program_({.command = commandOf(kind, file, socket_),
                .logFile = directory / (nameOf(kind) + ".log")}) {}

void RealPlayer::pause() const {
    control("{\"command\":[\"set_property\",\"pause\",true]}\n");
}

void RealPlayer::resume() const {
    control("{\"command\":[\"set_property\",\"pause\",false]}\n");
}

void RealPlayer::reopen() const {
    control("{\"command\":[\"ao-reload\"]}\n");
}

void RealPlayer::control(const std::string& command) const {
    const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = socket_;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const bool sent = eventually(Seconds(10),
                                 [&] {
                                     return connect(handle, reinterpret_cast<sockaddr*>(&address),
                                                    sizeof address) == 0;
                                 }) &&
                      send(handle, command.data(), command.size(), MSG_NOSIGNAL) > 0;
    char answer[256];
    const bool answered = sent && recv(handle, answer, sizeof answer, 0) > 0;
    ::close(handle);
    if (!answered)
        throw std::runtime_error("the player does not listen");
}

std::string nameOf(PlayerKind kind) {
    switch (kind) {
    case PlayerKind::pwPlay:
        return "pw-play";
    case PlayerKind::paplay:
        return "paplay";
    case PlayerKind::aplay:
        return "aplay";
    case PlayerKind::sox:
        return "sox";
    case PlayerKind::mpv:
        return "mpv";
    }
    return "";
}

} // namespace orvanta::test
