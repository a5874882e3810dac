#include "core/services/HotkeyManager.h"
#include "platform/runloop/VirtualRunLoop.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/ScriptedHotKeyCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace orvanta::test {
namespace {

constexpr int kChanges = 2000;

/// A desktop that presses the first three combinations on a thread of its own, as often as it is
/// told: one that pressed without a pause would keep everybody else from the locks.
class PressingThread {
public:
    explicit PressingThread(ScriptedHotKeyCenter& center)
        : thread_([this, &center] { press(center); }) {}

    PressingThread(const PressingThread&) = delete;
    PressingThread& operator=(const PressingThread&) = delete;

    ~PressingThread() { finish(); }

    void pressAgain() { ++roundsWanted_; }

    /// Returns when all has been pressed.
    void finish() {
        isLast_ = true;
        if (thread_.joinable())
            thread_.join();
    }

    [[nodiscard]] long handled() const { return handled_; }

private:
    void press(ScriptedHotKeyCenter& center) {
        for (long round = 0;;) {
            if (round == roundsWanted_) {
                if (isLast_ && round == roundsWanted_)
                    return;
                std::this_thread::yield();
                continue;
            }
            ++round;
            for (const std::uint32_t id : {1U, 2U, 3U})
                if (center.press(id) == noErr)
                    ++handled_;
        }
    }

    std::atomic<bool> isLast_ = false;
    std::atomic<long> roundsWanted_ = 0;
    std::atomic<long> handled_ = 0;
    std::thread thread_;
};

class HotkeysAcrossThreads : public testing::Test {
protected:
    ~HotkeysAcrossThreads() override { HotkeyManager::releaseCurrent(); }

    ScriptedHotKeyCenter center;
    VirtualRunLoop runLoop;
    RecordingLog log;
    std::thread::id mainThread = std::this_thread::get_id();
    long ran = 0;
    bool ranElsewhere = false;

    Task counting() {
        return [this] {
            ++ran;
            ranElsewhere = ranElsewhere || std::this_thread::get_id() != mainThread;
        };
    }
};

TEST_F(HotkeysAcrossThreads, RunOnTheMainQueueWhereverThePressArrives) {
    const auto manager = HotkeyManager::create(center, runLoop, log);
    manager->registerDefaults(counting(), counting(), counting());
    OSStatus status = eventNotHandledErr;
    std::thread([&] { status = center.press(2); }).join();
    EXPECT_EQ(status, noErr);
    EXPECT_EQ(ran, 0);
    runLoop.runUntilIdle();
    EXPECT_EQ(ran, 1);
    EXPECT_FALSE(ranElsewhere);
}

TEST_F(HotkeysAcrossThreads, ComeAndGoWhileTheyArePressed) {
    const auto manager = HotkeyManager::create(center, runLoop, log);
    manager->registerHotkey(126, HotkeyManager::cmdShift, counting());
    PressingThread desktop(center);
    for (int change = 0; change < kChanges; ++change) {
        desktop.pressAgain();
        const auto id = manager->registerHotkey(125, HotkeyManager::cmdShift, counting());
        runLoop.runUntilIdle();
        manager->unregister(id);
    }
    desktop.finish();
    runLoop.runUntilIdle();
    EXPECT_GT(desktop.handled(), 0);
    EXPECT_EQ(ran, desktop.handled());
    EXPECT_FALSE(ranElsewhere);
}

TEST_F(HotkeysAcrossThreads, PassFromManagerToManagerWhileTheyArePressed) {
    auto manager = HotkeyManager::create(center, runLoop, log);
    manager->registerDefaults(counting(), counting(), counting());
    EXPECT_EQ(center.press(1), noErr);
    PressingThread desktop(center);
    for (int change = 0; change < kChanges; ++change) {
        desktop.pressAgain();
        manager = HotkeyManager::create(center, runLoop, log);
        manager->registerDefaults(counting(), counting(), counting());
        runLoop.runUntilIdle();
    }
    manager.reset();
    HotkeyManager::releaseCurrent();
    desktop.finish();
    runLoop.runUntilIdle();
    EXPECT_EQ(ran, desktop.handled() + 1);
    EXPECT_FALSE(ranElsewhere);
}

} // namespace
} // namespace orvanta::test
