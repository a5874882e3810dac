// What the views ask for sixty times a second, while callbacks run.

#include "core/engine/AudioTapManager.h"
#include "core/platform/UnavailableHotKeyCenter.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedProcessTable.h"
#include "platform/embedded/EmbeddedWorkspace.h"
#include "platform/media/MediaFileWriter.h"
#include "platform/memory/InMemoryUserDefaults.h"
#include "platform/runloop/InProcessNotificationCenter.h"
#include "platform/runloop/SystemWallClock.h"
#include "platform/runloop/ThreadSerialQueue.h"
#include "platform/runloop/WorkerRunLoop.h"
#include "tests/support/RecordingFileViewer.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace orvanta::bench {
namespace {

constexpr std::int32_t kFirstPID = 100;

class SilentLog final : public SystemLog {
public:
    void write(const LogRecord& /*record*/) override {}
};

/// Taps on one device that runs in real time.
class RunningTaps {
public:
    explicit RunningTaps(std::int32_t count) : count_(count), manager_(platform()) {
        server_.addDevice({.uid = "speakers", .framesPerCycle = 256, .keepsPlayed = false});
        for (std::int32_t index = 0; index < count_; ++index) {
            const std::int32_t pid = kFirstPID + index;
            manager_.createTap(
                pid, server_.addProgram({.pid = pid, .source = embedded::tone(440, 0.5F)}));
        }
        server_.startClock();
    }

    ~RunningTaps() { server_.stopClock(); }

    RunningTaps(const RunningTaps&) = delete;
    RunningTaps& operator=(const RunningTaps&) = delete;

    [[nodiscard]] float loudestPeak() const {
        float loudest = 0.0F;
        for (std::int32_t index = 0; index < count_; ++index)
            if (const auto level = manager_.getAudioLevel(kFirstPID + index))
                loudest = std::max(loudest, level->peak);
        return loudest;
    }

private:
    [[nodiscard]] Platform platform() {
        return {.audioHardware = server_,
                .processTable = processTable_,
                .workspace = workspace_,
                .systemLog = log_,
                .mainRunLoop = mainRunLoop_,
                .serialQueues = serialQueues_,
                .wallClock = wallClock_,
                .audioFileWriter = audioFiles_,
                .userDefaults = userDefaults_,
                .hotKeyCenter = hotKeyCenter_,
                .notificationCenter = notificationCenter_,
                .fileViewer = fileViewer_,
                .userFolders = userFolders_};
    }

    const std::int32_t count_;
    EmbeddedAudioServer server_;
    EmbeddedProcessTable processTable_{server_};
    EmbeddedWorkspace workspace_{server_};
    SilentLog log_;
    WorkerRunLoop mainRunLoop_;
    ThreadSerialQueues serialQueues_;
    SystemWallClock wallClock_;
    MediaFileWriter audioFiles_;
    InMemoryUserDefaults userDefaults_;
    UnavailableHotKeyCenter hotKeyCenter_;
    InProcessNotificationCenter notificationCenter_;
    test::RecordingFileViewer fileViewer_;
    const UserFolders userFolders_;
    AudioTapManager manager_;
};

void levelsOfAllTaps(benchmark::State& state) {
    const RunningTaps taps(static_cast<std::int32_t>(state.range(0)));
    for ([[maybe_unused]] const auto turn : state)
        benchmark::DoNotOptimize(taps.loudestPeak());
    state.SetLabel("all taps together");
}

BENCHMARK(levelsOfAllTaps)
    ->Name("levels")
    ->ArgName("taps")
    ->Arg(1)
    ->Arg(32)
    ->Arg(128)
    ->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace orvanta::bench
