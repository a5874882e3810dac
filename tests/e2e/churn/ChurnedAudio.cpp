#include "tests/e2e/churn/ChurnedAudio.h"

#include "tests/e2e/support/LeakBound.h"
#include "tests/e2e/support/SignalMatch.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

namespace orvanta::test {

namespace {

constexpr std::uint64_t usualSeed = 1;
constexpr int warmUpRounds = 10;
constexpr int roundsPerListening = 5;
constexpr int roundsPerLeak = 10;
constexpr std::size_t mostEventsPerRound = 3;
constexpr double longestPause = 0.15;
constexpr double settleBound = 3;
constexpr Seconds lookInterval{0.02};
const std::string tapPrefix = "orvanta-tap-";
const std::string givenUp = "tried to link on last rescan, not retrying";

/// A tap that is gone at the end of a block, however that ends.
class TapInScope {
public:
    TapInScope(MixerUnderTest& mixer, pid_t pid, float volume) : mixer_(mixer), pid_(pid) {
        mixer_.tap(pid_, volume);
    }

    TapInScope(const TapInScope&) = delete;
    TapInScope& operator=(const TapInScope&) = delete;

    ~TapInScope() { mixer_.manager().removeTap(pid_); }

private:
    MixerUnderTest& mixer_;
    pid_t pid_;
};

std::uint64_t chosenSeed() {
    if (const char* const given = std::getenv("ORVANTA_CHURN_SEED"))
        return std::strtoull(given, nullptr, 10);
    if (const int given = GTEST_FLAG_GET(random_seed); given != 0)
        return static_cast<std::uint64_t>(given);
    return usualSeed;
}

} // namespace

ChurnedAudio::ChurnedAudio() {
    const std::uint64_t seed = chosenSeed();
    std::cout << "seed " << seed << "; ORVANTA_CHURN_SEED=" << seed << " does the same again\n";
    random_.seed(seed);
}

void ChurnedAudio::SetUp() {
    EndToEndTest::SetUp();
    devices_ = {"speakers"};
    file_ = noiseFile(NoiseSignal(99), 48000, 2, Seconds(120));
    plugOne({.name = "headphones", .priority = 500});
    startBystander();
    start(std::nullopt);
    start(PlayerKind::paplay);
}

void ChurnedAudio::TearDown() {
    if (HasFailure())
        std::cout << journal_;
    EndToEndTest::TearDown();
}

std::size_t ChurnedAudio::below(std::size_t bound) {
    // Not the library's distribution: what that makes of a seed is not the same everywhere.
    return static_cast<std::size_t>(random_() % bound);
}

void ChurnedAudio::churn(int rounds) {
    Footprint before;
    std::string descriptorsBefore;
    for (int round = 1; round <= rounds; ++round) {
        journal_.beginRound(round);
        mixer().forgetLog();
        try {
            play(round);
        } catch (const std::exception& failure) {
            if (server_.isSessionManagerRunning())
                throw;
            journal_.note(failure.what());
            recoverFromCrash();
            settle();
        }
        if (round == warmUpRounds) {
            before = footprintWithoutPrograms();
            descriptorsBefore = openDescriptors();
            start(std::nullopt);
        }
    }
    Footprint after = footprintWithoutPrograms();
    // The ends of programs are still being heard of.
    eventually(Seconds(5), [&] {
        after = Footprint::now();
        return after.descriptors <= before.descriptors;
    });
    tell(rounds);
    std::cout << "before: " << before << "\nafter: " << after << "\n";
    EXPECT_LE(after.descriptors, before.descriptors) << "before:\n"
                                                     << descriptorsBefore << "after:\n"
                                                     << openDescriptors();
#ifdef ORVANTA_HAS_REALTIME_TRAP
    // Without sanitizers, whose heaps keep what is freed.
    constexpr std::size_t mebi = 1024UL * 1024UL;
    EXPECT_LE(after.heapBytes, before.heapBytes + mebi);
    EXPECT_LE(after.residentBytes, before.residentBytes + 8 * mebi);
#endif
}

void ChurnedAudio::play(int round) {
    givenUpBefore_ = server_.sessionManagerSaid(givenUp);
    const std::size_t events = 1 + below(mostEventsPerRound);
    for (std::size_t event = 0; event < events; ++event) {
        happen();
        letTimePass(Seconds(longestPause * static_cast<double>(below(100)) / 100));
    }
    settle();
    if (round % roundsPerListening != 0)
        return;
    // What is listened to must not be re-routed meanwhile.
    letTimePass(passesTake);
    settle();
    listen();
    if (round % roundsPerLeak == 0)
        measureLeak();
}

void ChurnedAudio::settle() {
    replaceEnded();
    retireOld();
    replaceSilent();
    for (const ChurnProgram& program : programs_)
        graph().awaitPlayback(program.pid());
    graph().await("there is a device",
                  [&] { return graph().node(graph().defaultSink()).has_value(); });

    double start = monotonicSeconds();
    for (auto left = misplaced(); !left.empty(); left = misplaced()) {
        letTimePass(lookInterval);
        if (monotonicSeconds() < start + settleBound)
            continue;
        for (ChurnProgram* const program : left)
            tapAnew(*program);
        replaceEnded();
        start = monotonicSeconds();
    }
    settleSeconds_.push_back(monotonicSeconds() - start);
    for (ChurnProgram& program : programs_)
        program.route.adopt(mixer().manager().getOutputDeviceUID(program.pid()));
    settleBystander();
}

void ChurnedAudio::settleBystander() {
    const auto isRight = [&] {
        return faultOfBystander().empty();
    };
    if (eventually(Seconds(settleBound), isRight))
        return;
    const std::string wrong = faultOfBystander();
    journal_.note("after 3 s, the bystander plays to " + wrong);
    if (wasAnyStreamGivenUp()) {
        forsaken_.emplace_back("the bystander");
        startBystander();
    }
    graph().await("the bystander plays to a device: " + wrong, isRight);
}

std::vector<ChurnProgram*> ChurnedAudio::misplaced() {
    std::vector<ChurnProgram*> found;
    for (ChurnProgram& program : programs_)
        if (!fault(program).empty())
            found.push_back(&program);
    return found;
}

std::string ChurnedAudio::deviceOf(const ChurnProgram& program) {
    return mixer().manager().getOutputDeviceUID(program.pid()).value_or(graph().defaultSink());
}

std::string ChurnedAudio::fault(ChurnProgram& program) {
    const pid_t pid = program.pid();
    const auto streams = graph().playbackNodes(pid);
    if (streams.empty())
        return "it has no stream";
    const auto played = graph().targets(streams.front().id);
    for (const GraphObject& stream : streams)
        if (!stream.isRunning || graph().targets(stream.id) != played)
            return "a stream does not run or runs elsewhere";
    if (played.size() != 1 || !played.front().starts_with(tapPrefix))
        return "it plays to " + (played.empty() ? "nothing" : played.front()) + ", not to its tap";

    const Route route = mixer().manager().getOutputDeviceUID(pid);
    if (!program.route.allows(route, monotonicSeconds()))
        return "its tap is routed to " + route.value_or("the default");
    const auto tap = graph().node(played.front());
    const auto heardOn = tap ? graph().targets(tap->id) : std::vector<std::string>();
    if (heardOn != std::vector{deviceOf(program)})
        return "its tap plays to " + (heardOn.empty() ? "nothing" : heardOn.front()) + " for " +
               deviceOf(program);
    if (!program.hasMovedOn(mixer().manager().getCallbackCount(pid)))
        return "its callbacks stand still";
    if (mixer().manager().getAudioLevel(pid).value_or(AudioLevel()).rms < 0.01F)
        return "its tap hears nothing";
    return "";
}

std::string ChurnedAudio::faultOfBystander() const {
    const auto streams = graph().playbackNodes(bystander_->pid());
    for (const GraphObject& stream : streams) {
        const auto played = graph().targets(stream.id);
        if (played.size() != 1 || std::ranges::count(devices_, played.front()) != 1)
            return played.empty() ? "nothing" : played.front();
    }
    return streams.empty() ? "no stream" : "";
}

void ChurnedAudio::tapAnew(ChurnProgram& program) {
    const std::string current = fault(program);
    // It may have come right while another was looked into.
    if (current.empty())
        return;
    const std::string wrong = program.name() + ": " + current;
    journal_.note("after 3 s, " + wrong);
    if (graph().targets(graph().awaitPlayback(program.pid()).id).empty() && wasAnyStreamGivenUp()) {
        forsaken_.push_back(program.name());
        program.kill();
        return;
    }
    if (isStuck(program)) {
        program.kill();
        return;
    }
    const bool wasGivenUp =
        mixer().logText().find("❌ Re-route failed for PID " + std::to_string(program.pid())) !=
        std::string::npos;
    if (!wasGivenUp)
        throw std::runtime_error(wrong + "\n" + graph().describe());
    tappedAnew_.push_back(wrong);
    forgetTap(program);
    tap(program);
}

bool ChurnedAudio::wasAnyStreamGivenUp() const {
    return server_.sessionManagerSaid(givenUp) > givenUpBefore_;
}

bool ChurnedAudio::isStuck(const ChurnProgram& program) {
    if (program.kind() != PlayerKind::pwPlay || levelOfStream(program) > 0)
        return false;
    // Its tap, if that were to blame, no longer is.
    forgetTap(program);
    graph().awaitPlayback(program.pid());
    if (levelOfStream(program) > 0)
        throw std::runtime_error(program.name() + " is silent only while it has a tap");
    journal_.note("it hands the server nothing but silence, without a tap as well");
    stuck_.push_back(program.name());
    return true;
}

double ChurnedAudio::levelOfStream(const ChurnProgram& program) const {
    const auto streams = graph().playbackNodes(program.pid());
    if (streams.empty())
        return 0;
    AlignedRecorder recorder(graph(), 1);
    recorder.listen(0, graph().outputPorts(streams.front().id).at(0));
    recorder.record(12000);
    return level(recorder.finish().channels[0]);
}

void ChurnedAudio::listen() {
    const std::string device = deviceOf(
        *std::next(programs_.begin(), static_cast<std::ptrdiff_t>(below(programs_.size()))));
    std::vector<Voice> voices;
    for (ChurnProgram& program : programs_)
        if (deviceOf(program) == device)
            voices.push_back({program.pid(), program.volume});
    const GraphObject stream = graph().awaitPlayback(bystander_->pid());
    if (graph().targets(stream.id) == std::vector{device})
        voices.push_back({bystander_->pid(), 1});
    journal_.note("listening to " + device + ", " + std::to_string(voices.size()) + " programs");
    EXPECT_LE(mixResidual(device, voices), rounding * static_cast<double>(voices.size()));
    ++listened_;
}

void ChurnedAudio::setAllMuted(bool areMuted) {
    for (const ChurnProgram& program : programs_)
        mixer().manager().setMuted(program.pid(), areMuted);
    for (const ChurnProgram& program : programs_) {
        const std::uint64_t before = mixer().manager().getCallbackCount(program.pid());
        graph().await("callbacks have run", [&] {
            return mixer().manager().getCallbackCount(program.pid()) >= before + 2;
        });
    }
}

void ChurnedAudio::measureLeak() {
    bystander_->close();
    setAllMuted(true);
    StreamClient probe({.seed = 97, .name = "probe"});
    probe.open();
    graph().awaitPlayback(probe.pid());
    const TapInScope tap(mixer(), probe.pid(), 0.5F);
    awaitTapped(probe.pid());

    const IdleShare idle;
    AlignedRecorder recorder(graph(), devices_.size());
    for (std::size_t index = 0; index < devices_.size(); ++index)
        recorder.listen(index, monitorPorts(devices_[index])[0]);
    recorder.record(12000);
    const std::string target = devices_[below(devices_.size())];
    if (oneIn(2)) {
        journal_.note("measuring what leaks when a stream is reopened");
        probe.close();
        probe.open();
    } else {
        journal_.note("measuring what leaks when a stream is moved to " + target);
        graph().setMetadata("default", graph().awaitPlayback(probe.pid()).id, "target.object",
                            "Spa:String", target);
    }
    recorder.record(24000);
    awaitTapped(probe.pid());
    const Capture capture = recorder.finish();

    std::size_t gained = 0;
    std::size_t leaked = 0;
    for (const std::vector<float>& device : capture.channels) {
        const PassageCounts counts = countPassages(device, probe.noise(), 0, 0.5F);
        gained += counts.gained;
        leaked += counts.leaked + counts.doubled;
    }
    leakedMs_.push_back(static_cast<double>(leaked) / framesPerMillisecond);
    EXPECT_GT(gained, 0U);
    EXPECT_LE(leakedMs_.back(), leakBoundAfter(idle, capture.cycles.back().frames));
    setAllMuted(false);
    bystander_->open();
}

Footprint ChurnedAudio::footprintWithoutPrograms() {
    while (!programs_.empty()) {
        forgetTap(programs_.front());
        programs_.pop_front();
    }
    while (devices_.size() > 1)
        takeAway(devices_.back());
    awaitNoTapNodes();
    return Footprint::now();
}

void ChurnedAudio::awaitNoTapNodes() const {
    graph().await("no tap's node is left in the server", [&] {
        return std::ranges::none_of(graph().nodes(), [](const GraphObject& node) {
            return node.get("node.name").starts_with(tapPrefix);
        });
    });
}

void ChurnedAudio::tell(int rounds) const {
    const auto greatest = [](const std::vector<double>& values) {
        return values.empty() ? 0 : std::ranges::max(values);
    };
    double sum = 0;
    for (const double seconds : settleSeconds_)
        sum += seconds;
    std::cout << rounds << " rounds, " << events_ << " events, " << taps_ << " taps, "
              << refusedRoutes_ << " routes refused; settled after "
              << sum / static_cast<double>(settleSeconds_.size()) << " s, "
              << greatest(settleSeconds_) << " s at the most; listened " << listened_
              << " times; leaked " << greatest(leakedMs_) << " ms at the most in "
              << leakedMs_.size() << " rounds; the session manager crashed " << crashes_
              << " times and got stuck in its start " << stuckStarts_ << " times; tapped anew "
              << tappedAnew_.size() << " times\n";
    for (const std::string& program : forsaken_)
        std::cout << "  left silent: " << program << "\n";
    for (const std::string& program : stuck_)
        std::cout << "  silent of itself: " << program << "\n";
    for (const std::string& reason : tappedAnew_)
        std::cout << "  " << reason << "\n";
}

} // namespace orvanta::test
