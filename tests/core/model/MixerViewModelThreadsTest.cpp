// The model with real queues: its main queue is the test's own thread.

#include "core/model/MixerViewModel.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedWorkspace.h"
#include "platform/runloop/ThreadSerialQueue.h"
#include "platform/runloop/WorkerRunLoop.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/model/ScriptedSources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace orvanta::test {
namespace {

constexpr std::int32_t kPID = 100;

/// Tells which threads ask it what processes use.
class WatchedProcesses final : public ProcessTable {
public:
    explicit WatchedProcesses(const ProcessTable& told) : told_(told) {}

    [[nodiscard]] std::int32_t ownPID() const override { return told_.ownPID(); }

    [[nodiscard]] std::optional<std::string> name(std::int32_t pid) const override {
        return told_.name(pid);
    }

    [[nodiscard]] std::optional<std::string> path(std::int32_t pid) const override {
        return told_.path(pid);
    }

    [[nodiscard]] std::optional<std::int32_t> parent(std::int32_t pid) const override {
        return told_.parent(pid);
    }

    [[nodiscard]] std::optional<ProcessTaskInfo> taskInfo(std::int32_t pid) const override {
        if (std::this_thread::get_id() == mainThread_)
            isAskedOnTheMainThread = true;
        return told_.taskInfo(pid);
    }

    mutable std::atomic<bool> isAskedOnTheMainThread = false;

private:
    const ProcessTable& told_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
};

class AMixerModelOnThreads : public testing::Test, public PlatformFakes {
protected:
    AMixerModelOnThreads() {
        server.addDevice({.uid = "speakers", .name = "Speakers", .keepsPlayed = false});
        server.addProgram({.pid = kPID, .name = "Player", .source = embedded::constant(0.5F)});
        processTable.names[kPID] = "player";
        processTable.tasks[kPID] = {.residentSize = 1U << 20U, .threadCount = 2};
        server.startClock();
    }

    ~AMixerModelOnThreads() override {
        HotkeyManager::releaseCurrent();
        server.stopClock();
    }

    void makeModel(MixerViewModel::Collaborators collaborators = {}) {
        model = MixerViewModel::create({.audioHardware = server,
                                        .processTable = watchedProcesses,
                                        .workspace = desktop,
                                        .systemLog = log,
                                        .mainRunLoop = mainLoop,
                                        .serialQueues = queues,
                                        .wallClock = wallClock,
                                        .audioFileWriter = audioFiles,
                                        .userDefaults = userDefaults,
                                        .hotKeyCenter = hotKeyCenter,
                                        .notificationCenter = notificationCenter,
                                        .fileViewer = fileViewer,
                                        .userFolders = userFolders},
                                       std::move(collaborators));
        model->autoTapEnabled.set(true);
        model->setPopoverVisible(true);
    }

    WatchedProcesses watchedProcesses{processTable};
    WorkerRunLoop mainLoop;
    ThreadSerialQueues queues;
    EmbeddedAudioServer server;
    EmbeddedWorkspace desktop{server};
    std::shared_ptr<MixerViewModel> model;
};

TEST_F(AMixerModelOnThreads, EndsWhateverItsQueuesAreDoing) {
    for (int round = 0; round < 30; ++round) {
        mainLoop.post([&] { makeModel(); });
        mainLoop.postAfter(Seconds(0.001 * round), [&] {
            model->refreshApps();
            model.reset();
            mainLoop.quit();
        });
        mainLoop.run();
        EXPECT_TRUE(server.holdings().taps.empty()) << "in round " << round;
    }
    // What the queues had posted by then finds no model.
    mainLoop.post([&] { mainLoop.quit(); });
    mainLoop.run();
    EXPECT_TRUE(server.holdings().taps.empty());
}

TEST_F(AMixerModelOnThreads, EndsWhileItsHotKeysArePressed) {
    std::atomic<bool> isOver = false;
    mainLoop.post([&] { makeModel(); });
    mainLoop.postAfter(Seconds(0.05), [&] {
        model.reset();
        mainLoop.quit();
    });
    std::thread desktopThread;
    // The registrations stand once the model does.
    mainLoop.post([&] {
        desktopThread = std::thread([&] {
            while (!isOver) {
                for (const std::uint32_t key : {1U, 2U, 3U, 4U})
                    hotKeyCenter.press(key);
                std::this_thread::yield();
            }
        });
    });
    mainLoop.run();
    isOver = true;
    desktopThread.join();
    mainLoop.post([&] { mainLoop.quit(); });
    mainLoop.run();
    EXPECT_TRUE(server.holdings().taps.empty());
}

TEST_F(AMixerModelOnThreads, FindsTapsAndMeasuresWhatPlays) {
    Observation stats;
    Observation levels;
    bool isMeasured = false;
    bool isHeard = false;
    const auto finish = [&] {
        if (isMeasured && isHeard)
            mainLoop.quit();
    };
    mainLoop.post([&] {
        makeModel();
        stats = model->processStats.observe([&](const PIDMap<ProcessStats>& coming) {
            isMeasured = coming.contains(kPID);
            finish();
        });
        levels = model->audioLevels.observe([&](const PIDMap<float>& coming) {
            isHeard = isHeard || (coming.contains(kPID) && coming.at(kPID) == 0.5F);
            finish();
        });
    });
    mainLoop.postAfter(Seconds(60.0), [&] { mainLoop.quit(); });
    mainLoop.run();
    EXPECT_TRUE(isMeasured);
    EXPECT_TRUE(isHeard);
    EXPECT_FALSE(watchedProcesses.isAskedOnTheMainThread);
    model.reset();
}

TEST_F(AMixerModelOnThreads, DiscoversOffTheMainThreadAndOneAtATime) {
    const auto discovery = std::make_shared<ScriptedDiscovery>();
    const std::thread::id mainThread = std::this_thread::get_id();
    std::atomic<int> inside = 0;
    std::atomic<bool> isCrowded = false;
    std::atomic<int> onQueue = 0;
    discovery->meanwhile = [&] {
        if (++inside > 1)
            isCrowded = true;
        if (std::this_thread::get_id() != mainThread)
            ++onQueue;
        // Long enough for the other thread to come.
        for (int turn = 0; turn < 50; ++turn)
            std::this_thread::yield();
        --inside;
    };
    mainLoop.post([&] {
        makeModel({nullptr, discovery, nullptr, nullptr});
        for (int pass = 0; pass < 100; ++pass) {
            model->refreshApps();
            model->refreshAppsSync();
        }
    });
    mainLoop.postAfter(Seconds(0.1), [&] {
        model.reset();
        mainLoop.quit();
    });
    mainLoop.run();
    EXPECT_FALSE(isCrowded);
    EXPECT_GT(onQueue, 0);
}

} // namespace
} // namespace orvanta::test
