#pragma once

#include "core/platform/AudioHardware.h"
#include "platform/pipewire/CallbackGate.h"

#include <array>
#include <atomic>
#include <utility>

namespace orvanta::pipewire {

/// A tap is stereo: every array by channel has the left one first.
inline constexpr std::size_t kChannels = 2;

/// The most frames that one cycle can have; the server's own limit.
inline constexpr std::uint32_t kMaxFrames = 8192;

/// When a cycle happens and how long it is.
struct CycleTime {
    std::uint32_t frames = 1024;
    /// Hz
    std::uint32_t rate = 48000;
    double sampleTime = 0;
    /// Nanoseconds of the monotonic clock.
    std::uint64_t hostTime = 0;

    [[nodiscard]] std::uint64_t nanoseconds() const noexcept {
        return std::uint64_t{frames} * 1'000'000'000ULL / rate;
    }
};

/// One channel's memory for `frames` samples; null where the server has none in this cycle.
struct CycleBuffers {
    std::array<float*, kChannels> input{};
    std::array<float*, kChannels> output{};
};

/// The IOProc that a tap's cycles call, and the object that it is told.
struct CycleClient {
    AudioObjectID device = kAudioObjectUnknown;
    AudioDeviceIOClient client;
};

/// What a tap does in one cycle: completes the buffers, calls the started IOProc, brings the
/// result into the device's shape. Cycles come from the server's graph, or, while that has none
/// for this tap, from `SilentCycles`, always on the data thread, so never two at once.
class TapCycle {
public:
    /// From the control side. `client` must stay until `stop` has returned.
    void start(const CycleClient* client) noexcept { gate_.open(client); }

    /// Returns only when no call is in flight, and calls `late` once if that takes two seconds.
    template <class Late>
    void stop(Late&& late) {
        gate_.close(std::chrono::seconds(2), std::forward<Late>(late));
    }

    [[nodiscard]] bool isStarted() const noexcept { return gate_.isOpen(); }

    /// From the control side: whether the device has one channel, which then gets half the sum.
    void setMono(bool isMono) noexcept { mono_.store(isMono, std::memory_order_relaxed); }

    /// Hz of the last cycle, 0 before the first. From any thread.
    [[nodiscard]] std::uint32_t rate() const noexcept {
        return rate_.load(std::memory_order_relaxed);
    }

    /// On the data thread: a cycle of the graph. Every output buffer that is there gets filled.
    void run(const CycleTime& time, const CycleBuffers& buffers) noexcept;

    /// On the data thread: a cycle with silence in and nowhere to go. False when it was the last
    /// that makes sense, because nobody is called or the IOProc has come to rest.
    bool runSilent(std::uint64_t hostTime) noexcept;

    /// On the data thread: how long the last cycle was.
    [[nodiscard]] const CycleTime& lastTime() const noexcept { return last_; }

private:
    bool call(const CycleBuffers& buffers) noexcept;

    CallbackGate<const CycleClient> gate_;
    std::atomic<bool> mono_{false};
    std::atomic<std::uint32_t> rate_{0};
    CycleTime last_;
    // Stand in for buffers that the server does not give.
    std::array<std::array<float, kMaxFrames>, kChannels> silence_{};
    std::array<std::array<float, kMaxFrames>, kChannels> unheard_{};
};

/// Half the sum of both channels, into both.
void foldToMono(float* left, float* right, std::uint32_t frames) noexcept;

} // namespace orvanta::pipewire
