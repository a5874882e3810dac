#pragma once

#include "platform/pipewire/SilentCycles.h"
#include "platform/pipewire/TapCycle.h"
#include "platform/pipewire/TapPort.h"

#include <spa/node/node.h>
#include <spa/param/latency-utils.h>

#include <functional>

namespace orvanta::pipewire {

/// The node of one tap as the server's graph runs it: two inputs that the session manager links
/// the program to, two outputs that go to the device, both in the same cycle.
///
/// It lives in this process; the server gets a handle to it (`ExportedTap`). Everything but the
/// cycles arrives on the control thread.
class TapNode {
public:
    /// `starved` is called on the control thread, and again and again while it goes on, when cycles
    /// run and a port is linked but has got no buffers.
    TapNode(ControlLoop& loop, TapCycle& cycle, SilentCycles& silentCycles,
            std::function<void()> starved);
    TapNode(const TapNode&) = delete;
    TapNode& operator=(const TapNode&) = delete;

    /// What is handed to the server.
    [[nodiscard]] spa_node* interface() { return &node_; }

    /// False where the system had no descriptor left for it: then it is of no use.
    [[nodiscard]] bool isUsable() const { return starved_.isUsable(); }

    /// Back to the state in which it can be handed to a server, also to another one than before.
    void reset();

private:
    friend struct TapNodeMethods;

    int addListener(spa_hook* listener, const spa_node_events* events, void* data);
    int enumerateParams(int sequence, std::uint32_t id, std::uint32_t start, const spa_pod* filter);
    int setParam(std::uint32_t id);
    int setIo(std::uint32_t id, void* data, std::size_t size);
    int command(const spa_command* command);
    int enumeratePortParams(int sequence, TapPort& port, std::uint32_t id, std::uint32_t start,
                            std::uint32_t count, const spa_pod* filter);
    int setPortParam(TapPort& port, std::uint32_t id, const spa_pod* param);
    int setLatency(const TapPort& port, const spa_pod* param);
    int process() noexcept;
    void watchBuffers(std::uint64_t nanoseconds) noexcept;

    TapPort* port(spa_direction direction, std::uint32_t number);
    void announce(TapPort& port);
    void withdraw(TapPort& port);
    void emit(TapPort& port, bool inFull);
    bool emitParam(int sequence, std::uint32_t id, std::uint32_t index, spa_pod* param,
                   const spa_pod* filter);

    ControlLoop& loop_;
    TapCycle& cycle_;
    SilentCycles& silentCycles_;
    spa_node node_{};
    spa_hook_list hooks_{};
    spa_node_info info_{};
    std::array<spa_param_info, 3> params_{};
    std::array<TapPort, kChannels> inputs_;
    std::array<TapPort, kChannels> outputs_;
    /// By the direction that they are about.
    std::array<spa_latency_info, 2> latencies_{};
    bool isConfigured_ = false;
    // On the data thread only.
    const spa_io_position* position_ = nullptr;
    /// For how long cycles have run without the buffers of a linked port, in nanoseconds.
    std::uint64_t starvedFor_ = 0;
    ControlEvent starved_;
};

} // namespace orvanta::pipewire
