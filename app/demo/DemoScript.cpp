#include "app/demo/DemoScript.h"

#include <cmath>

namespace orvanta::demo {
namespace {

constexpr Seconds kStep{1.0};
constexpr double kNanosecondsPerStep = 1e9;
constexpr double kShareWhileSilent = 0.05;
constexpr std::uint64_t kBytesPerMegabyte = 1048576;

/// A process does not use the same in every second.
double unrest(int second, std::int32_t pid) {
    return 1.0 + 0.3 * std::sin(0.7 * second + pid);
}

} // namespace

DemoScript::DemoScript(RunLoop& runLoop, EmbeddedAudioServer& server,
                       EmbeddedProcessTable& processes, const std::vector<DemoProgram>& programs)
    : server_(server), processes_(processes) {
    for (const DemoProgram& program : programs) {
        Player player{.program = program, .isPlaying = program.turns.isOn(0)};
        player.object = server_.addProgram({.pid = program.pid,
                                            .name = program.name,
                                            .bundleIdentifier = program.bundleIdentifier,
                                            .source = program.sound,
                                            .playing = player.isPlaying});
        use(player);
        players_.push_back(std::move(player));
    }
    timer_ = runLoop.repeat(kStep, [this] { playSecond(); });
}

void DemoScript::playSecond() {
    ++second_;
    for (Player& player : players_) {
        use(player);
        const bool plays = player.program.turns.isOn(second_);
        if (plays == player.isPlaying)
            continue;
        player.isPlaying = plays;
        if (plays)
            server_.resumeProgram(player.object);
        else
            server_.pauseProgram(player.object);
    }
}

void DemoScript::use(Player& player) {
    const DemoProgram& program = player.program;
    const double share = program.use.processorShare * unrest(second_, program.pid) *
                         (player.isPlaying ? 1.0 : kShareWhileSilent);
    player.processorTime += static_cast<std::uint64_t>(share * kNanosecondsPerStep);
    const std::uint64_t resident = program.use.megabytes * kBytesPerMegabyte;
    processes_.set(program.pid, {.name = program.name,
                                 .taskInfo = ProcessTaskInfo{.virtualSize = 4 * resident,
                                                             .residentSize = resident,
                                                             .totalUser = player.processorTime,
                                                             .threadCount = program.use.threads}});
}

} // namespace orvanta::demo
