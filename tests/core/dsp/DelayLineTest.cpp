#include "core/dsp/DelayLine.h"

#include <gtest/gtest.h>

#include <random>

namespace orvanta {
namespace {

TEST(DelayLine, DelaysByItsLengthHoweverLongTheRunsAre) {
    for (const std::size_t delay : {1U, 2U, 14U, 48U, 512U, 700U}) {
        DelayLine line(delay);
        ASSERT_EQ(line.delay(), delay);
        std::mt19937 random(1);
        std::size_t written = 0;
        for (int run = 0; run < 200; ++run) {
            const std::size_t count = run == 7 ? line.longestRun() : random() % 200;
            float* const samples = line.nextRun(count);
            for (std::size_t k = 0; k < count; ++k, ++written) {
                samples[k + delay] = static_cast<float>(written + 1);
                const float expected =
                    written < delay ? 0.0F : static_cast<float>(written + 1 - delay);
                ASSERT_EQ(samples[k], expected) << "delay " << delay << ", run " << run;
            }
        }
    }
}

TEST(DelayLine, IsSilentOnceCleared) {
    DelayLine line(3);
    float* samples = line.nextRun(5);
    for (std::size_t k = 0; k < 5; ++k)
        samples[k + 3] = 1.0F;
    line.clear();
    samples = line.nextRun(3);
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_EQ(samples[k], 0.0F);
}

} // namespace
} // namespace orvanta
