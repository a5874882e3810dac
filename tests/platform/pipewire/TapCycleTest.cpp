#include "platform/pipewire/TapCycle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

namespace orvanta::pipewire {
namespace {

constexpr std::uint32_t frames = 64;

/// An IOProc that adds 1 to what comes in, looks at its buffers, and rests when it is told to.
struct AddingProc {
    int calls = 0;
    bool rests = false;
    bool buffersWereWhole = true;
    std::array<float, kChannels> lastInput{};
    double lastSampleTime = -1;

    static OSStatus proc(AudioObjectID, const AudioTimeStamp* now, const AudioBufferList* input,
                         const AudioTimeStamp*, AudioBufferList* output, const AudioTimeStamp*,
                         void* clientData) {
        auto& self = *static_cast<AddingProc*>(clientData);
        ++self.calls;
        self.lastSampleTime = now->mSampleTime;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const AudioBuffer& in = (*input)[channel];
            const AudioBuffer& out = (*output)[channel];
            self.buffersWereWhole = self.buffersWereWhole && input->count() == kChannels &&
                                    output->count() == kChannels && in.mNumberChannels == 1 &&
                                    out.mNumberChannels == 1 && in.mData != nullptr &&
                                    out.mData != nullptr && in.sampleCount() == out.sampleCount();
            self.lastInput[channel] = in.samples()[0];
            for (std::size_t frame = 0; frame < in.sampleCount(); ++frame)
                out.samples()[frame] = in.samples()[frame] + 1.0F;
        }
        return noErr;
    }

    static bool isAtRest(const void* clientData) noexcept {
        return static_cast<const AddingProc*>(clientData)->rests;
    }

    [[nodiscard]] CycleClient client() { return {7, {proc, this, isAtRest}}; }
};

class TapCycleTest : public testing::Test {
protected:
    TapCycleTest() {
        for (auto* channels : {&input_, &output_})
            for (auto& channel : *channels)
                channel.assign(frames, 0.0F);
        std::fill(input_[0].begin(), input_[0].end(), 0.25F);
        std::fill(input_[1].begin(), input_[1].end(), 0.75F);
    }

    [[nodiscard]] CycleBuffers buffers() {
        return {{input_[0].data(), input_[1].data()}, {output_[0].data(), output_[1].data()}};
    }

    CycleTime time_{frames, 48000, 1000, 5};
    AddingProc proc_;
    CycleClient client_ = proc_.client();
    std::unique_ptr<TapCycle> cycle_ = std::make_unique<TapCycle>();
    std::array<std::vector<float>, kChannels> input_;
    std::array<std::vector<float>, kChannels> output_;
};

TEST_F(TapCycleTest, GivesTheIOProcBothSidesOfOneCycle) {
    cycle_->start(&client_);
    cycle_->run(time_, buffers());
    EXPECT_EQ(proc_.calls, 1);
    EXPECT_EQ(proc_.lastSampleTime, 1000);
    EXPECT_EQ(output_[0].back(), 1.25F);
    EXPECT_EQ(output_[1].back(), 1.75F);
    EXPECT_EQ(cycle_->rate(), 48000U);
}

TEST_F(TapCycleTest, IsSilentWhenNobodyPlaysTheTap) {
    output_[0].assign(frames, 9.0F);
    cycle_->run(time_, buffers());
    EXPECT_EQ(output_[0], std::vector<float>(frames, 0.0F));
    EXPECT_EQ(output_[1], std::vector<float>(frames, 0.0F));
}

TEST_F(TapCycleTest, TakesAMissingInputForSilence) {
    cycle_->start(&client_);
    CycleBuffers buffers = this->buffers();
    buffers.input[1] = nullptr;
    // Twice: what the first cycle wrote anywhere must not come back in the second.
    for (int cycle = 0; cycle < 2; ++cycle)
        cycle_->run(time_, buffers);
    EXPECT_EQ(proc_.lastInput, (std::array{0.25F, 0.0F}));
    EXPECT_TRUE(proc_.buffersWereWhole);
}

TEST_F(TapCycleTest, CallsTheIOProcWhereNobodyHearsIt) {
    cycle_->start(&client_);
    cycle_->run(time_, CycleBuffers());
    EXPECT_EQ(proc_.calls, 1);
    EXPECT_TRUE(proc_.buffersWereWhole);
}

TEST_F(TapCycleTest, FoldsForADeviceWithOneChannel) {
    cycle_->start(&client_);
    cycle_->setMono(true);
    CycleBuffers buffers = this->buffers();
    buffers.output[1] = nullptr;
    cycle_->run(time_, buffers);
    EXPECT_EQ(output_[0], std::vector<float>(frames, 0.5F * (1.25F + 1.75F)));
}

TEST_F(TapCycleTest, GoesOnSilentlyAtThePaceOfTheLastCycleUntilRest) {
    cycle_->start(&client_);
    cycle_->run(time_, buffers());
    EXPECT_TRUE(cycle_->runSilent(99));
    EXPECT_EQ(proc_.calls, 2);
    EXPECT_EQ(proc_.lastInput, (std::array{0.0F, 0.0F}));
    EXPECT_EQ(proc_.lastSampleTime, 1000 + frames);
    proc_.rests = true;
    EXPECT_FALSE(cycle_->runSilent(100));
    EXPECT_EQ(proc_.calls, 3);
}

TEST_F(TapCycleTest, NeverRestsWithoutBeingAsked) {
    client_.client.isAtRest = nullptr;
    cycle_->start(&client_);
    for (int cycle = 0; cycle < 100; ++cycle)
        EXPECT_TRUE(cycle_->runSilent(0));
}

TEST_F(TapCycleTest, HasNothingToDoAfterStopping) {
    cycle_->start(&client_);
    cycle_->stop([] { FAIL(); });
    cycle_->run(time_, buffers());
    EXPECT_FALSE(cycle_->runSilent(0));
    EXPECT_EQ(proc_.calls, 0);
}

TEST_F(TapCycleTest, TakesTheLongestCycleThereIs) {
    for (auto& channel : input_)
        channel.assign(kMaxFrames, 0.5F);
    for (auto& channel : output_)
        channel.assign(kMaxFrames, 0.0F);
    time_.frames = kMaxFrames;
    cycle_->start(&client_);
    cycle_->run(time_, buffers());
    EXPECT_EQ(output_[1], std::vector<float>(kMaxFrames, 1.5F));
}

TEST(CallbackGate, NeverClosesDuringACall) {
    CallbackGate<std::atomic<bool>> gate;
    std::atomic<bool> inCall{false};
    std::atomic<bool> ends{false};
    std::thread caller([&] {
        while (!ends)
            gate.pass([](std::atomic<bool>& flag) {
                flag = true;
                std::this_thread::yield();
                flag = false;
            });
    });
    for (int round = 0; round < 2000; ++round) {
        gate.open(&inCall);
        std::this_thread::yield();
        gate.close(std::chrono::seconds(10), [] {});
        ASSERT_FALSE(inCall);
    }
    ends = true;
    caller.join();
}

TEST(CallbackGate, WaitsForACallHoweverLongItTakesAndSaysSoOnce) {
    CallbackGate<int> gate;
    int work = 0;
    std::atomic<bool> entered{false};
    std::atomic<bool> ends{false};
    gate.open(&work);
    std::thread caller([&] {
        gate.pass([&](int&) {
            entered = true;
            while (!ends)
                std::this_thread::yield();
        });
    });
    while (!entered)
        std::this_thread::yield();
    std::atomic<int> timesLate{0};
    std::atomic<bool> isClosed{false};
    std::thread closer([&] {
        gate.close(std::chrono::milliseconds(1), [&] { ++timesLate; });
        isClosed = true;
    });
    while (timesLate == 0)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(isClosed);
    ends = true;
    caller.join();
    closer.join();
    EXPECT_EQ(timesLate, 1);
}

} // namespace
} // namespace orvanta::pipewire
