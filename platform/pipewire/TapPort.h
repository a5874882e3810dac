#pragma once

#include "platform/pipewire/ControlLoop.h"

#include <spa/buffer/buffer.h>
#include <spa/node/io.h>
#include <spa/node/node.h>
#include <spa/param/param.h>
#include <spa/utils/dict.h>

#include <array>
#include <cstdint>
#include <string>

namespace orvanta::pipewire {

/// One mono port of a tap's node, with the buffers that the server has put behind it.
///
/// Buffers and the io area are replaced on the data thread, between two cycles, so a cycle never
/// sees one half old and half new.
class TapPort {
public:
    static constexpr std::uint32_t kMaxBuffers = 32;

    TapPort(ControlLoop& loop, spa_direction direction, std::uint32_t number, std::string name,
            std::string channel);
    ~TapPort();
    TapPort(const TapPort&) = delete;
    TapPort& operator=(const TapPort&) = delete;

    [[nodiscard]] spa_direction direction() const { return direction_; }

    [[nodiscard]] std::uint32_t number() const { return number_; }

    /// Whether the server has been told of the port.
    bool isAnnounced = false;

    [[nodiscard]] bool hasFormat() const { return hasFormat_; }

    void setFormat(bool hasFormat);
    int useBuffers(spa_buffer** buffers, std::uint32_t count);
    void setIo(spa_io_buffers* io);

    /// As if it had never been part of a graph.
    void reset();

    /// Describes the port, in full or what has changed since the last time.
    const spa_port_info* info(bool inFull);

    /// Says with the next `info` that the latencies have changed.
    void latencyChanged();

    /// On the data thread: whether it is linked and yet has no buffers.
    [[nodiscard]] bool lacksBuffers() const noexcept {
        return io_ != nullptr && buffers_.count == 0;
    }

    /// On the data thread: this cycle's samples of an input, null if there are none or too few.
    float* takeInput(std::uint32_t frames) noexcept;

    /// On the data thread: where an output's samples of this cycle go, null if nobody wants them.
    float* claimOutput(std::uint32_t frames) noexcept;

    /// On the data thread: an output's buffer is free again.
    void recycle(std::uint32_t buffer) noexcept;

private:
    struct Mapping {
        void* address = nullptr;
        std::size_t length = 0;
    };

    struct Buffers {
        std::uint32_t count = 0;
        std::array<spa_buffer*, kMaxBuffers> buffers{};
        std::array<float*, kMaxBuffers> samples{};
        std::array<Mapping, kMaxBuffers> mappings{};
        std::array<std::uint32_t, kMaxBuffers> free{};
        std::uint32_t freeCount = 0;
    };

    static int map(Buffers& set, std::uint32_t index);
    static void unmap(Buffers& set);

    ControlLoop& loop_;
    spa_direction direction_;
    std::uint32_t number_;
    std::string name_;
    std::string channel_;
    bool hasFormat_ = false;
    spa_port_info info_{};
    std::array<spa_param_info, 5> params_{};
    std::array<spa_dict_item, 3> items_{};
    spa_dict dict_{};
    // On the data thread only.
    spa_io_buffers* io_ = nullptr;
    Buffers buffers_;
};

} // namespace orvanta::pipewire
