// Prints what 1, 4 and 16 taps cost in processor time on a private server at 1024 frames and 48
// kHz: while their programs play, and while these are paused and the taps have come to rest.
//   orvanta_tap_cost [SECONDS]     length of each measurement, 10 without

#include "tests/e2e/support/AudioGraph.h"
#include "tests/e2e/support/PrivateAudioServer.h"
#include "tests/e2e/support/StreamClient.h"
#include "tests/e2e/support/TapHolder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

namespace orvanta::test {

namespace {

struct Cost {
    double mixer = 0;
    double server = 0;
};

/// Percent of one core.
Cost measure(const TapHolder* holder, const PrivateAudioServer& server, Seconds length) {
    const auto now = [&] {
        return Cost{holder == nullptr ? 0 : holder->processorSeconds(),
                    server.server().processorSeconds()};
    };
    const Cost before = now();
    const double start = monotonicSeconds();
    letTimePass(length);
    const Cost after = now();
    const double percent = 100.0 / (monotonicSeconds() - start);
    return {(after.mixer - before.mixer) * percent, (after.server - before.server) * percent};
}

void awaitRest(TapHolder& holder, const std::vector<pid_t>& pids) {
    const bool rests = eventually(Seconds(20), [&] {
        return std::ranges::all_of(pids, [&](pid_t pid) { return holder.report(pid).peak == 0; });
    });
    if (!rests)
        std::puts("(the taps did not come to rest)");
    letTimePass(Seconds(1));
}

void printRow(std::size_t taps, Seconds length) {
    const PrivateAudioServer server;
    const AudioGraph graph;
    graph.plug({.name = "speakers"});
    graph.await("there is a default", [&] { return graph.defaultSink() == "speakers"; });
    graph.forceQuantum(1024);

    std::vector<std::unique_ptr<StreamClient>> clients;
    std::vector<pid_t> pids;
    for (std::size_t index = 0; index < std::max<std::size_t>(taps, 1); ++index) {
        clients.push_back(std::make_unique<StreamClient>(
            StreamClient::Settings{.seed = index, .name = "player-" + std::to_string(index)}));
        clients.back()->open();
        graph.awaitPlayback(clients.back()->pid());
        pids.push_back(clients.back()->pid());
    }
    std::optional<TapHolder> holder;
    if (taps > 0)
        holder.emplace(0.5F, pids);
    TapHolder* const mixer = holder ? &*holder : nullptr;
    const Cost playing = measure(mixer, server, length);
    for (const auto& client : clients)
        client->pause();
    if (mixer != nullptr)
        awaitRest(*mixer, pids);
    const Cost paused = measure(mixer, server, length);
    std::printf("| %zu | %.2f | %.2f | %.2f | %.2f |\n", taps, playing.mixer, playing.server,
                paused.mixer, paused.server);
    std::fflush(stdout);
}

} // namespace

} // namespace orvanta::test

int main(int count, char** words) {
    const double seconds = count > 1 ? std::atof(words[1]) : 10;
    std::puts("Percent of one core, 1024 frames at 48 kHz\n\n"
              "| taps | mixer, playing | server, playing | mixer, paused | server, paused |\n"
              "|---|---|---|---|---|");
    try {
        for (const std::size_t taps : {0U, 1U, 4U, 16U})
            orvanta::test::printRow(taps, orvanta::test::Seconds(seconds));
    } catch (const std::exception& failure) {
        std::puts(failure.what());
        return 1;
    }
    return 0;
}
