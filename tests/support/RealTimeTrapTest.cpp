#include "tests/support/RealTimeTrap.h"

#include "core/platform/RealTimeSection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvanta::test {
namespace {

/// Keeps the optimiser from removing an allocation whose result nobody looks at.
void use(void* pointer) {
    asm volatile("" ::"r"(pointer) : "memory");
}

TEST(RealTimeTrapDeathTest, BitesWhenASectionAllocates) {
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            use(std::malloc(16));
        },
        "IO thread called malloc");
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            std::vector<int> numbers(10);
            use(numbers.data());
        },
        "IO thread called malloc");
}

TEST(RealTimeTrapDeathTest, BitesWhenASectionFrees) {
    void* const block = std::malloc(16);
    use(block);
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            std::free(block);
        },
        "IO thread called free");
    std::free(block);
}

TEST(RealTimeTrapDeathTest, BitesWhenASectionLocks) {
    std::mutex mutex;
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            mutex.lock();
        },
        "IO thread called pthread_mutex_lock");
}

TEST(RealTimeTrapDeathTest, BitesWhenASectionSleepsOrTouchesFiles) {
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            timespec time{};
            time.tv_nsec = 1;
            nanosleep(&time, nullptr);
        },
        "IO thread called nanosleep");
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            [[maybe_unused]] const auto written = write(2, "x", 1);
        },
        "IO thread called write");
}

TEST(RealTimeTrapDeathTest, BitesWhenASectionWaitsForAnAtomicButNotWhenItWakesOthers) {
    std::atomic<int> word{0};
    {
        const RealTimeSection section;
        word.store(1);
        word.notify_all();
    }
    EXPECT_DEATH(
        {
            const RealTimeSection section;
            word.wait(1);
        },
        "IO thread called");
}

TEST(RealTimeTrap, LeavesOtherThreadsAndOtherTimesAlone) {
    const std::uint64_t before = realTimeSectionsEntered();
    {
        std::thread other;
        { const RealTimeSection section; }
        other = std::thread([] { use(std::malloc(1)); });
        other.join();
    }
    EXPECT_EQ(realTimeSectionsEntered(), before + 1);
}

TEST(RealTimeTrapDeathTest, StaysSetUntilTheOutermostSectionEnds) {
    EXPECT_DEATH(
        {
            const RealTimeSection outer;
            { const RealTimeSection inner; }
            use(std::malloc(16));
        },
        "IO thread called malloc");
}

} // namespace
} // namespace orvanta::test
