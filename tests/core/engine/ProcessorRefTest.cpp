#include "core/engine/ProcessorRef.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace orvanta {
namespace {

/// Counts its living instances and spoils itself when it dies.
class Probe {
public:
    explicit Probe(int value) : value_(value) { ++living; }

    ~Probe() {
        value_ = -1;
        --living;
    }

    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    [[nodiscard]] int value() const { return value_.load(std::memory_order_relaxed); }

    static inline std::atomic<int> living{0};

private:
    std::atomic<int> value_;
};

TEST(CallbackEpoch, AMarkBetweenCallbacksHasPassedAtOnce) {
    CallbackEpoch epoch;
    EXPECT_TRUE(epoch.hasPassed(epoch.mark()));
    { const CallbackEpoch::Callback callback(epoch); }
    EXPECT_TRUE(epoch.hasPassed(epoch.mark()));
}

TEST(CallbackEpoch, AMarkDuringACallbackPassesWhenThatCallbackEnds) {
    CallbackEpoch epoch;
    CallbackEpoch::Mark mark = 0;
    {
        const CallbackEpoch::Callback callback(epoch);
        mark = epoch.mark();
        EXPECT_FALSE(epoch.hasPassed(mark));
    }
    EXPECT_TRUE(epoch.hasPassed(mark));
    const CallbackEpoch::Callback next(epoch);
    EXPECT_TRUE(epoch.hasPassed(mark)) << "a later callback no longer sees what was withdrawn";
}

TEST(ProcessorRef, LendsNothingUntilSomethingIsPublished) {
    CallbackEpoch epoch;
    ProcessorRef<Probe> ref(epoch);
    EXPECT_EQ(ref.borrow(), nullptr);
    EXPECT_EQ(ref.get(), nullptr);
    ref.replace(std::make_unique<Probe>(5));
    EXPECT_EQ(ref.borrow()->value(), 5);
    EXPECT_EQ(ref.get(), ref.borrow());
}

TEST(ProcessorRef, FreesADroppedProcessorAtOnceWhenNoCallbackRuns) {
    CallbackEpoch epoch;
    ProcessorRef<Probe> ref(epoch);
    ref.replace(std::make_unique<Probe>(5));
    ref.replace(nullptr);
    EXPECT_EQ(ref.borrow(), nullptr);
    EXPECT_EQ(Probe::living.load(), 0);
}

TEST(ProcessorRef, KeepsADroppedProcessorForTheCallbackThatHoldsIt) {
    CallbackEpoch epoch;
    ProcessorRef<Probe> ref(epoch);
    ref.replace(std::make_unique<Probe>(5));
    {
        const CallbackEpoch::Callback callback(epoch);
        const Probe* const borrowed = ref.borrow();
        ref.replace(std::make_unique<Probe>(6));
        EXPECT_EQ(borrowed->value(), 5);
        EXPECT_EQ(ref.retiredCount(), 1U);
        EXPECT_EQ(ref.borrow()->value(), 6);
    }
    EXPECT_EQ(Probe::living.load(), 2) << "the IO thread itself frees nothing";
    ref.collect();
    EXPECT_EQ(Probe::living.load(), 1);
}

TEST(ProcessorRef, FreesEverythingAtTheEndOfItsOwner) {
    CallbackEpoch epoch;
    {
        ProcessorRef<Probe> ref(epoch);
        const CallbackEpoch::Callback callback(epoch);
        ref.replace(std::make_unique<Probe>(1));
        ref.replace(std::make_unique<Probe>(2));
    }
    EXPECT_EQ(Probe::living.load(), 0);
}

TEST(ProcessorRef, LendsOnlyLivingProcessorsWhileAnotherThreadReplacesThem) {
    CallbackEpoch epoch;
    ProcessorRef<Probe> ref(epoch);
    std::atomic<bool> isDone{false};
    std::atomic<bool> sawDead{false};
    std::thread io([&] {
        while (!isDone.load(std::memory_order_relaxed)) {
            const CallbackEpoch::Callback callback(epoch);
            if (const Probe* const borrowed = ref.borrow())
                for (int look = 0; look < 20; ++look)
                    if (borrowed->value() < 0)
                        sawDead.store(true);
        }
    });
    for (int round = 0; round < 200'000; ++round) {
        ref.replace(round % 3 == 0 ? nullptr : std::make_unique<Probe>(round));
    }
    isDone.store(true);
    io.join();
    EXPECT_FALSE(sawDead.load());
    ref.replace(nullptr);
    EXPECT_EQ(Probe::living.load(), 0);
    EXPECT_EQ(ref.retiredCount(), 0U);
}

} // namespace
} // namespace orvanta
