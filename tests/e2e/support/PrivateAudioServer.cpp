#include "tests/e2e/support/PrivateAudioServer.h"

#include "tests/e2e/support/AudioGraph.h"

#include <algorithm>
#include <csignal>
#include <deque>
#include <fstream>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvanta::test {

namespace fs = std::filesystem;

namespace {

/// Far more than a start takes, even on a machine that does ten other things.
constexpr Seconds startBound{20};

ScopedEnvironment::Variables environmentIn(const fs::path& root) {
    const std::string run = root / "run";
    return {{"XDG_RUNTIME_DIR", run},
            {"PIPEWIRE_RUNTIME_DIR", run},
            {"PULSE_RUNTIME_PATH", run + "/pulse"},
            {"PULSE_SERVER", "unix:" + run + "/pulse/native"},
            {"HOME", root / "home"},
            {"XDG_CONFIG_HOME", root / "config"},
            {"XDG_STATE_HOME", root / "state"},
            {"XDG_CACHE_HOME", root / "cache"},
            {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
            {"DBUS_SYSTEM_BUS_ADDRESS", "disabled:"},
            {"PIPEWIRE_REMOTE", std::nullopt},
            {"PIPEWIRE_LATENCY", std::nullopt},
            {"PIPEWIRE_QUANTUM", std::nullopt},
            {"PIPEWIRE_RATE", std::nullopt},
            {"PULSE_LATENCY_MSEC", std::nullopt},
            {"PULSE_SINK", std::nullopt}};
}

void writeFile(const fs::path& path, const char* text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

/// The stock session manager ends when a part of it misses D-Bus or hardware, so those parts are
/// switched off; all policy stays as people have it.
void configure(const fs::path& root) {
    writeFile(root / "config/wireplumber/main.lua.d/51-headless.lua",
              "alsa_monitor.enabled = false\n"
              "v4l2_monitor.enabled = false\n"
              "libcamera_monitor.enabled = false\n"
              "default_access.properties[\"enable-flatpak-portal\"] = false\n");
    writeFile(root / "config/wireplumber/bluetooth.lua.d/51-headless.lua",
              "bluez_monitor.enabled = false\n");
    for (const char* name : {"run", "home", "state", "cache", "log"})
        fs::create_directories(root / name);
    fs::permissions(root / "run", fs::perms::owner_all);
}

bool accepts(const fs::path& socketPath) {
    const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string text = socketPath;
    text.copy(address.sun_path, sizeof address.sun_path - 1);
    const bool accepted =
        connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(handle);
    return accepted;
}

/// Whether the session manager chooses a default. While it is still starting it can miss a device
/// for good, so when it has not chosen yet a device comes and goes to make it look again.
bool takesUpDevices(const AudioGraph& graph) {
    const auto hasChosen = [&] {
        return !graph.defaultSink().empty();
    };
    const bool hasDevices = std::ranges::any_of(graph.nodes(), [](const GraphObject& node) {
        return node.get("media.class") == "Audio/Sink";
    });
    if (hasDevices && eventually(Seconds(2), hasChosen))
        return true;
    const std::string passing = "e2e-readiness";
    graph.plug({.name = passing});
    const bool wasSeen = eventually(Seconds(1), hasChosen);
    graph.unplug(passing);
    return wasSeen && eventually(Seconds(1), [&] { return graph.defaultSink() != passing; });
}

} // namespace

PrivateAudioServer::PrivateAudioServer() : environment_(environmentIn(root_.path())) {
    configure(root_.path());
    startServer();
    startSessionManager();
    startPulseBridge();
}

PrivateAudioServer::~PrivateAudioServer() {
    for (auto* daemon : {&pulseBridge_, &sessionManager_, &server_})
        daemon->reset();
}

fs::path PrivateAudioServer::log(const std::string& daemon) const {
    return root_.path() / "log" / (daemon + ".log");
}

void PrivateAudioServer::waitUntil(const std::string& what, const std::function<bool()>& isSo,
                                   const std::unique_ptr<ChildProcess>& daemon) const {
    bool alive = true;
    const bool ready = eventually(startBound, [&] {
        alive = daemon->isRunning();
        return !alive || isSo();
    });
    if (!ready || !alive)
        throw std::runtime_error((alive ? "in vain waited until " : "ended before ") + what +
                                 logTail());
}

void PrivateAudioServer::startServer() {
    server_.reset();
    server_ = std::make_unique<ChildProcess>(
        ChildProcess::Launch{.command = {"pipewire"}, .logFile = log("pipewire")});
    waitUntil(
        "the server answers", [this] { return accepts(root_.path() / "run/pipewire-0"); }, server_);
}

void PrivateAudioServer::startSessionManager() {
    sessionManager_.reset();
    sessionManager_ = std::make_unique<ChildProcess>(
        ChildProcess::Launch{.command = {"wireplumber"}, .logFile = log("wireplumber")});
    const AudioGraph graph;
    waitUntil(
        "the session manager brings its metadata", [&] { return graph.hasMetadata("default"); },
        sessionManager_);
    waitUntil(
        "the session manager takes up devices", [&] { return takesUpDevices(graph); },
        sessionManager_);
}

void PrivateAudioServer::startPulseBridge() {
    pulseBridge_.reset();
    pulseBridge_ = std::make_unique<ChildProcess>(
        ChildProcess::Launch{.command = {"pipewire-pulse"}, .logFile = log("pipewire-pulse")});
    waitUntil(
        "the Pulse bridge answers", [this] { return accepts(root_.path() / "run/pulse/native"); },
        pulseBridge_);
}

void PrivateAudioServer::freezeServer() {
    server_->signal(SIGSTOP);
}

void PrivateAudioServer::thawServer() {
    server_->signal(SIGCONT);
}

void PrivateAudioServer::freezeSessionManager() {
    sessionManager_->signal(SIGSTOP);
}

void PrivateAudioServer::thawSessionManager() {
    sessionManager_->signal(SIGCONT);
}

void PrivateAudioServer::killServer() {
    server_->kill();
}

void PrivateAudioServer::killSessionManager() {
    sessionManager_->kill();
}

void PrivateAudioServer::killPulseBridge() {
    pulseBridge_->kill();
}

std::size_t PrivateAudioServer::sessionManagerSaid(const std::string& text) const {
    std::ifstream file(log("wireplumber"));
    std::size_t times = 0;
    for (std::string line; std::getline(file, line);)
        times += line.find(text) == std::string::npos ? 0U : 1U;
    return times;
}

std::string PrivateAudioServer::logTail() const {
    std::string text;
    for (const char* daemon : {"pipewire", "wireplumber", "pipewire-pulse"}) {
        std::ifstream file(log(daemon));
        std::deque<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
            if (lines.size() > 15)
                lines.pop_front();
        }
        text += std::string("\n-- ") + daemon + "\n";
        for (const std::string& line : lines)
            text += line + "\n";
    }
    return text;
}

} // namespace orvanta::test
