// The whole chain at work while another thread turns every knob. The allocation and lock trap
// stands around each callback of plain builds; the thread sanitizer watches in its own.

#include "core/engine/tapRenderCallback.h"
#include "tests/support/Buffers.h"
#include "tests/support/EngineRig.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cmath>
#include <random>
#include <thread>

namespace orvanta::test {
namespace {

#ifdef ORVANTA_HAS_REALTIME_TRAP
constexpr std::uint64_t callbackCount = 10'000'000;
#else
constexpr std::uint64_t callbackCount = 500'000;
#endif
/// Most are just long enough for the widest loops with every band of the equaliser.
constexpr std::array<std::uint32_t, 4> frameCounts{20, 16, 33, 24};
constexpr std::size_t mostFrames = 33;

/// Everything a user can change, in random order and to random values.
void changeSomething(AudioTapManager& manager, std::mt19937& random) {
    constexpr auto pid = EngineRig::pid;
    const auto upTo = [&random](unsigned most) {
        return random() % (most + 1);
    };
    const auto fraction = [&upTo] {
        return static_cast<float>(upTo(1000)) / 1000.0F;
    };
    switch (upTo(8)) {
    case 0:
        manager.setVolume(pid, 2.0F * fraction());
        break;
    case 1:
        manager.setBalance(pid, 2.0F * fraction() - 1.0F);
        break;
    case 2:
        manager.setEQ(pid, static_cast<int>(upTo(9)), 24.0F * fraction() - 12.0F);
        break;
    case 3: {
        const auto& presets = CompressorPreset::allPresets();
        manager.setCompressor(pid, presets[upTo(static_cast<unsigned>(presets.size() - 1))].preset);
        break;
    }
    case 4:
        manager.setLimiterEnabled(pid, upTo(1) == 0);
        break;
    case 5:
        manager.setNormalizationEnabled(pid, upTo(3) != 0);
        break;
    case 6:
        manager.setStereoWidth(pid, 2.5F * fraction());
        break;
    case 7:
        manager.setCrossfeed(pid, fraction());
        break;
    default:
        manager.setNoiseGate(pid, upTo(1) == 0, -60.0F * fraction());
    }
}

TEST(ChainUnderChange, NeitherAllocatesNorLocksNorLosesItselfThroughMillionsOfCallbacks) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(EngineRig::pid, rig.program));
    std::atomic<bool> isDone{false};
    std::atomic<std::uint64_t> changes{0};
    std::thread changing([&] {
        std::mt19937 random(1);
        while (!isDone.load(std::memory_order_relaxed)) {
            changeSomething(*rig.manager, random);
            changes.fetch_add(1, std::memory_order_relaxed);
        }
    });

    std::mt19937 random(2);
    std::uniform_real_distribution<float> value(-1.0F, 1.0F);
    Buffers input;
    Buffers output;
    for (int channel = 0; channel < 2; ++channel) {
        std::vector<float> samples(mostFrames);
        for (float& sample : samples)
            sample = value(random);
        input.add(1, samples);
        output.add(1, std::vector<float>(mostFrames));
    }
    AudioBufferList* const in = input.list();
    AudioBufferList* const out = output.list();
    const auto* const client = static_cast<const AudioCallbackRef*>(rig.server.lastClientData);
    bool isFinite = true;
    for (std::uint64_t done = 0; done < callbackCount; ++done) {
        const std::uint32_t frames = frameCounts[done % frameCounts.size()];
        for (std::size_t channel = 0; channel < 2; ++channel) {
            in->mBuffers[channel].mDataByteSize = frames * sizeof(float);
            out->mBuffers[channel].mDataByteSize = frames * sizeof(float);
        }
        tapRenderCallback(in, out, client);
        for (std::size_t channel = 0; channel < 2; ++channel)
            isFinite = isFinite && std::isfinite(output[channel].front()) &&
                       std::isfinite(output[channel][frames - 1]);
    }
    isDone.store(true);
    changing.join();
    EXPECT_TRUE(isFinite);
    EXPECT_EQ(rig.manager->getCallbackCount(EngineRig::pid), callbackCount);
    EXPECT_GT(changes.load(), 1000U);
}

} // namespace
} // namespace orvanta::test
