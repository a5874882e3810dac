// What happens in a churned audio system.

#include "tests/e2e/churn/ChurnedAudio.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace orvanta::test {

namespace {

const std::array<NullSink, 4> everyDevice = {
    NullSink{.name = "speakers", .priority = 1000}, NullSink{.name = "headphones", .priority = 500},
    NullSink{.name = "screen", .priority = 400}, NullSink{.name = "dock", .priority = 1500}};
constexpr std::array<ChurnProgram::Kind, 5> everyKind = {
    std::nullopt, PlayerKind::pwPlay, PlayerKind::paplay, PlayerKind::aplay, PlayerKind::mpv};
constexpr std::array volumes = {0.25F, 0.5F, 0.75F};
constexpr std::size_t mostPrograms = 4;
/// Half of what the players' file lasts.
constexpr double retirementAge = 60;
/// Longer than every delay of the engine in a chain.
constexpr double longestWithoutDevice = 3;
/// A tap's node, which leaves the server with the last device, is shown to it again five times in
/// ten seconds at most. A start of the session manager alone may take three of them.
constexpr double showingWindow = 10.5;

const NullSink& deviceNamed(const std::string& name) {
    return *std::ranges::find(everyDevice, name, &NullSink::name);
}

} // namespace

void ChurnedAudio::happen() {
    struct Event {
        std::size_t weight;
        void (ChurnedAudio::*act)();
    };

    static constexpr std::array<Event, 13> all = {{{4, &ChurnedAudio::plugDevice},
                                                   {3, &ChurnedAudio::unplugDevice},
                                                   {2, &ChurnedAudio::renameDevice},
                                                   {3, &ChurnedAudio::chooseDefault},
                                                   {4, &ChurnedAudio::startProgram},
                                                   {3, &ChurnedAudio::endProgram},
                                                   {4, &ChurnedAudio::reopenStream},
                                                   {3, &ChurnedAudio::moveStream},
                                                   {5, &ChurnedAudio::routeTap},
                                                   {1, &ChurnedAudio::loseAllDevices},
                                                   {1, &ChurnedAudio::restartSessionManager},
                                                   {1, &ChurnedAudio::restartServer},
                                                   {1, &ChurnedAudio::restartPulseBridge}}};
    std::size_t sum = 0;
    for (const Event& event : all)
        sum += event.weight;
    std::size_t drawn = below(sum);
    const Event* event = all.begin();
    for (; drawn >= event->weight; ++event)
        drawn -= event->weight;
    (this->*event->act)();
    ++events_;
}

void ChurnedAudio::plugDevice() {
    std::vector<NullSink> absent;
    std::ranges::copy_if(everyDevice, std::back_inserter(absent), [&](const NullSink& sink) {
        return std::ranges::count(devices_, sink.name) == 0;
    });
    if (!absent.empty())
        plugOne(absent[below(absent.size())]);
}

void ChurnedAudio::unplugDevice() {
    if (devices_.size() > 1)
        takeAway(devices_[below(devices_.size())]);
}

/// The server cannot rename a device that is there: under its new name it is another one with the
/// same UID.
void ChurnedAudio::renameDevice() {
    if (devices_.size() == 1 && !mayLoseAllDevices())
        return;
    NullSink sink = deviceNamed(devices_[below(devices_.size())]);
    sink.description = "Device " + std::to_string(events_);
    journal_.note("renaming " + sink.name + " to " + sink.description);
    takeAway(sink.name);
    plugOne(sink);
    graph().await("the mixer knows the new name",
                  [&] { return mixer().deviceName(sink.name) == sink.description; });
}

void ChurnedAudio::chooseDefault() {
    const std::string& device = devices_[below(devices_.size())];
    journal_.note("choosing " + device + " as the default");
    for (ChurnProgram& program : programs_)
        program.route.defaultMoved(monotonicSeconds());
    graph().chooseDefault(device);
    for (ChurnProgram& program : programs_)
        program.route.defaultMoved(monotonicSeconds());
}

void ChurnedAudio::startProgram() {
    if (programs_.size() < mostPrograms)
        start(everyKind.at(below(everyKind.size())));
}

void ChurnedAudio::endProgram() {
    if (programs_.size() < 2)
        return;
    const auto program =
        std::next(programs_.begin(), static_cast<std::ptrdiff_t>(below(programs_.size())));
    journal_.note("ending " + program->name());
    if (oneIn(2))
        program->kill();
    forgetTap(*program);
    programs_.erase(program);
}

void ChurnedAudio::reopenStream() {
    std::vector<ChurnProgram*> able;
    for (ChurnProgram& program : programs_)
        if (program.canReopen() && program.isRunning())
            able.push_back(&program);
    if (able.empty())
        return;
    ChurnProgram& program = *able[below(able.size())];
    journal_.note(program.name() + " reopens its stream");
    program.reopen();
}

void ChurnedAudio::moveStream() {
    ChurnProgram& program =
        *std::next(programs_.begin(), static_cast<std::ptrdiff_t>(below(programs_.size())));
    const std::string& device = devices_[below(devices_.size())];
    const auto streams = graph().playbackNodes(program.pid());
    if (streams.empty() || !program.mayBeMoved(monotonicSeconds()))
        return;
    program.noteMove(monotonicSeconds());
    journal_.note("another program moves " + program.name() + " to " + device);
    if (oneIn(2)) {
        graph().setMetadata("default", streams.front().id, "target.object", "Spa:String", device);
        return;
    }
    try {
        runToEnd({"pactl", "move-sink-input", streams.front().get("object.serial"), device});
    } catch (const std::runtime_error&) {
        journal_.note("which the Pulse bridge refuses: it does not know one of them yet");
    }
}

void ChurnedAudio::routeTap() {
    ChurnProgram& program =
        *std::next(programs_.begin(), static_cast<std::ptrdiff_t>(below(programs_.size())));
    const Route route = oneIn(4) ? std::nullopt : Route(devices_[below(devices_.size())]);
    const bool isRouted = mixer().manager().routeToDevice(program.pid(), route);
    journal_.note("routing " + program.name() + " to " + route.value_or("the default") +
                  (isRouted ? "" : ", which is refused"));
    program.route.choose(isRouted ? route : std::nullopt);
    refusedRoutes_ += isRouted ? 0 : 1;
}

bool ChurnedAudio::mayLoseAllDevices() {
    if (monotonicSeconds() < lastLossOfAll_ + showingWindow)
        return false;
    lastLossOfAll_ = monotonicSeconds();
    return true;
}

void ChurnedAudio::loseAllDevices() {
    if (!mayLoseAllDevices())
        return;
    const std::vector<std::string> lost = devices_;
    journal_.note("losing all devices");
    for (const std::string& device : lost)
        takeAway(device);
    letTimePass(Seconds(longestWithoutDevice * static_cast<double>(below(100)) / 100));
    plugAll({lost.begin(), lost.begin() + 1 + static_cast<std::ptrdiff_t>(below(lost.size()))});
}

void ChurnedAudio::restartSessionManager() {
    if (!mayLoseAllDevices())
        return;
    journal_.note("restarting the session manager");
    server_.killSessionManager();
    bringBackSessionManager();
}

void ChurnedAudio::recoverFromCrash() {
    journal_.note("the session manager has crashed");
    ++crashes_;
    lastLossOfAll_ = monotonicSeconds();
    bringBackSessionManager();
    startBystander();
    setAllMuted(false);
}

/// The devices go and come with it, as hardware does, which is in its charge.
void ChurnedAudio::bringBackSessionManager() {
    const std::vector<std::string> lost = devices_;
    wasDaemonRestarted_ = true;
    for (const std::string& device : lost)
        takeAway(device);
    // It would wait for ever for the ports of a sink that goes while it starts.
    awaitNoTapNodes();
    try {
        server_.startSessionManager();
    } catch (const std::runtime_error& failure) {
        journal_.note(std::string("the session manager is stuck: ") + failure.what());
        ++stuckStarts_;
        renewServer(lost);
        return;
    }
    plugAll(lost);
}

void ChurnedAudio::restartServer() {
    journal_.note("restarting the server");
    renewServer(std::exchange(devices_, {}));
}

void ChurnedAudio::renewServer(const std::vector<std::string>& devices) {
    wasDaemonRestarted_ = true;
    server_.killServer();
    letTimePass(Seconds(longestWithoutDevice * static_cast<double>(below(100)) / 100));
    server_.startServer();
    server_.startSessionManager();
    server_.startPulseBridge();
    reconnectGraph();
    plugAll(devices);
    startBystander();
    replaceAll();
}

void ChurnedAudio::restartPulseBridge() {
    journal_.note("restarting the Pulse bridge");
    wasDaemonRestarted_ = true;
    server_.killPulseBridge();
    server_.startPulseBridge();
    for (ChurnProgram& program : programs_)
        if (program.kind() == PlayerKind::paplay)
            eventually(Seconds(5), [&] { return !program.isRunning(); });
    replaceEnded();
}

void ChurnedAudio::startBystander() {
    bystander_ =
        std::make_unique<StreamClient>(StreamClient::Settings{.seed = 98, .name = "bystander"});
    bystander_->open();
}

void ChurnedAudio::plugAll(const std::vector<std::string>& names) {
    for (const std::string& name : names)
        plugOne(deviceNamed(name));
}

void ChurnedAudio::plugOne(const NullSink& sink) {
    journal_.note("plugging " + sink.name);
    const auto isTakenUp = [&] {
        const auto choice = graph().node(graph().defaultSink());
        return choice && choice->get("factory.name") == "support.null-audio-sink";
    };
    graph().plug(sink);
    // The session manager overlooks one now and then that comes while it is busy starting.
    if (!eventually(Seconds(3), isTakenUp)) {
        journal_.note("plugging " + sink.name + " once more: it was overlooked");
        graph().unplug(sink.name);
        graph().plug(sink);
    }
    devices_.push_back(sink.name);
    mixer().awaitDevice(sink.name);
    for (ChurnProgram& program : programs_) {
        program.route.deviceReturned(sink.name, monotonicSeconds());
        program.route.defaultMoved(monotonicSeconds());
    }
}

// By value: the name may be one of those that are struck out here.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ChurnedAudio::takeAway(std::string name) {
    journal_.note("unplugging " + name);
    for (ChurnProgram& program : programs_)
        program.route.deviceLeft(name, graph().defaultSink(), monotonicSeconds());
    graph().unplug(name);
    std::erase(devices_, name);
    for (ChurnProgram& program : programs_)
        program.route.defaultMoved(monotonicSeconds());
}

void ChurnedAudio::start(ChurnProgram::Kind kind) {
    ChurnProgram& program = programs_.emplace_back(kind, nextSeed_++, file_, server_.directory());
    program.volume = volumes.at(below(volumes.size()));
    journal_.note("starting " + program.name());
    graph().awaitPlayback(program.pid());
    tap(program);
}

void ChurnedAudio::tap(ChurnProgram& program) {
    const AudioObjectID process = mixer().awaitProcess(program.pid());
    // It is refused while there is no device, and asked for again when the list is read again.
    if (!eventually(Seconds(5),
                    [&] { return mixer().manager().createTap(program.pid(), process); }))
        throw std::runtime_error("no tap on " + program.name());
    mixer().manager().setVolume(program.pid(), program.volume);
    program.route = ExpectedRoute();
    ++taps_;
}

void ChurnedAudio::forgetTap(const ChurnProgram& program) {
    mixer().manager().removeTap(program.pid());
}

void ChurnedAudio::replaceEnded() {
    std::vector<ChurnProgram::Kind> ended;
    for (auto program = programs_.begin(); program != programs_.end();) {
        if (program->isRunning()) {
            ++program;
            continue;
        }
        journal_.note(program->name() + " has ended");
        ended.push_back(program->kind());
        forgetTap(*program);
        program = programs_.erase(program);
    }
    for (const ChurnProgram::Kind kind : ended)
        start(kind);
}

/// The bridge ends its clients' streams when the session manager goes together with all devices,
/// tapped or not, and paplay goes on without one for ever. And a session manager that starts while
/// devices come may leave a stream it found unlinked for good, tapped or not.
void ChurnedAudio::replaceSilent() {
    if (!std::exchange(wasDaemonRestarted_, false))
        return;
    const auto plays = [&](pid_t pid) {
        return std::ranges::any_of(graph().playbackNodes(pid), [&](const GraphObject& stream) {
            return stream.isRunning && !graph().targets(stream.id).empty();
        });
    };
    for (ChurnProgram& program : programs_) {
        if (!program.isRunning() || eventually(Seconds(2), [&] { return plays(program.pid()); }))
            continue;
        journal_.note(program.name() + " does not play again");
        forsaken_.push_back(program.name());
        program.kill();
    }
    if (!eventually(Seconds(2), [&] { return plays(bystander_->pid()); })) {
        journal_.note("the bystander does not play again");
        forsaken_.emplace_back("the bystander");
        startBystander();
    }
    replaceEnded();
}

void ChurnedAudio::replaceAll() {
    for (ChurnProgram& program : programs_)
        program.kill();
    replaceEnded();
}

void ChurnedAudio::retireOld() {
    for (ChurnProgram& program : programs_)
        if (program.kind() && program.age() > retirementAge)
            program.kill();
    replaceEnded();
}

} // namespace orvanta::test
