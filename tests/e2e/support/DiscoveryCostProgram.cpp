// Prints what a pass of discovery costs with 10, 50 and 200 programs that have opened audio on a
// private server, among as many other processes as make 400 in all.
//   orvanta_discovery_cost [PASSES]     measured for each row, 40 without

#include "core/discovery/AudioProcessDiscovery.h"
#include "tests/e2e/support/AudioGraph.h"
#include "tests/e2e/support/MixerUnderTest.h"
#include "tests/e2e/support/PrivateAudioServer.h"
#include "tests/e2e/support/StreamClient.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orvanta::test {

namespace {

constexpr std::size_t kProcesses = 400;
/// Of the programs; the others have paused. More would keep the server busy, not discovery.
constexpr std::size_t kPlaying = 10;
/// The mixer looks once in a while: no pass may live on what another has just read.
constexpr Seconds kBetweenPasses{0.3};

/// One takes 128 streams at most.
constexpr std::size_t kDevices = 3;

std::string deviceName(std::size_t index) {
    return "speakers-" + std::to_string(index);
}

std::size_t processCount() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; }))
            ++count;
    }
    return count;
}

using Children = std::vector<std::unique_ptr<ChildProcess>>;

/// Processes without sound, up to `kProcesses` in all.
Children makeCrowd(const std::filesystem::path& directory) {
    Children crowd;
    while (processCount() < kProcesses)
        crowd.push_back(std::make_unique<ChildProcess>(ChildProcess::Launch{
            .command = {"sleep", "3600"}, .logFile = directory / "crowd.log"}));
    return crowd;
}

std::vector<std::unique_ptr<StreamClient>> makePrograms(std::size_t count,
                                                        const AudioGraph& graph) {
    std::vector<std::unique_ptr<StreamClient>> programs;
    for (std::size_t index = 0; index < count; ++index) {
        programs.push_back(std::make_unique<StreamClient>(
            StreamClient::Settings{.name = "program-" + std::to_string(index)}));
        programs.back()->open(deviceName(index % kDevices));
        graph.awaitPlayback(programs.back()->pid());
        if (index >= kPlaying)
            programs.back()->pause();
    }
    return programs;
}

void printRow(std::size_t count, std::size_t passes) {
    const PrivateAudioServer server;
    const AudioGraph graph;
    for (std::size_t index = 0; index < kDevices; ++index)
        graph.plug({.name = deviceName(index)});
    graph.await("there is a default", [&] { return !graph.defaultSink().empty(); });
    const auto programs = makePrograms(count, graph);
    const auto crowd = makeCrowd(server.directory());

    MixerUnderTest mixer;
    AudioProcessDiscovery discovery(mixer.platform());
    std::vector<double> milliseconds;
    std::size_t listed = 0;
    const double first = monotonicSeconds();
    listed = discovery.discoverAudioApps().size();
    const double firstPass = (monotonicSeconds() - first) * 1000.0;
    for (std::size_t pass = 0; pass < passes; ++pass) {
        letTimePass(kBetweenPasses);
        const double start = monotonicSeconds();
        listed = discovery.discoverAudioApps().size();
        milliseconds.push_back((monotonicSeconds() - start) * 1000.0);
    }
    std::ranges::sort(milliseconds);
    std::printf("| %zu | %zu | %zu | %.2f | %.2f | %.2f | %.2f |\n", count, processCount(), listed,
                firstPass, milliseconds[passes / 2], milliseconds[passes * 95 / 100],
                milliseconds.back());
    std::fflush(stdout);
}

} // namespace

} // namespace orvanta::test

int main(int count, char** words) {
    const auto passes = static_cast<std::size_t>(count > 1 ? std::max(1, std::atoi(words[1])) : 40);
    std::puts("Milliseconds of a pass of discovery\n\n"
              "| programs | processes | listed | first | median | 95 of 100 | worst |\n"
              "|---|---|---|---|---|---|---|");
    try {
        for (const std::size_t programs : {10U, 50U, 200U})
            orvanta::test::printRow(programs, passes);
    } catch (const std::exception& failure) {
        std::puts(failure.what());
        return 1;
    }
    return 0;
}
