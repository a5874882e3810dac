#pragma once

#include "platform/pipewire/RateLimit.h"
#include "platform/pipewire/ServerMirror.h"

#include <functional>
#include <memory>
#include <vector>

struct pw_core;

namespace orvanta::pipewire {

/// Which of a tap's outputs goes into which of a device's inputs, by the server's port ids.
struct LinkPlan {
    struct Pair {
        std::uint32_t output = 0;
        std::uint32_t input = 0;

        friend bool operator==(const Pair&, const Pair&) = default;
    };

    std::uint32_t outputNode = 0;
    std::uint32_t inputNode = 0;
    /// Empty as long as one side has no ports.
    std::vector<Pair> pairs;
    /// Whether the device has one channel only: the left output then carries both.
    bool isMono = false;

    friend bool operator==(const LinkPlan&, const LinkPlan&) = default;
};

/// Left to left and right to right where the device names its channels so, whatever more it has;
/// the first two where it does not; the left output alone into the only one.
LinkPlan planLinks(std::uint32_t tapNode, const std::vector<const ServerPort*>& tapPorts,
                   std::uint32_t deviceNode, const std::vector<const ServerPort*>& devicePorts);

/// The links from one tap's node to its device. They are passive, so a tap whose program has
/// paused does not keep the device running, and they go when this program goes.
class DeviceLinks {
public:
    /// `changed` is called when a link has come up or gone, on the control thread.
    explicit DeviceLinks(std::function<void()> changed);
    ~DeviceLinks();
    DeviceLinks(const DeviceLinks&) = delete;
    DeviceLinks& operator=(const DeviceLinks&) = delete;

    /// Makes the links be those of `plan` and no others; an empty plan takes all away. False when
    /// the server has refused or taken away the same links too often of late: to be tried later.
    bool follow(pw_core* core, const LinkPlan& plan);

    /// Forgets the links of a server that is gone, or takes all away.
    void clear();

    /// Whether every planned link carries sound as soon as both ends run.
    [[nodiscard]] bool areReady() const;

private:
    friend struct LinkEvents;

    struct Link;

    std::function<void()> changed_;
    LinkPlan plan_;
    std::vector<std::unique_ptr<Link>> links_;
    RateLimit attempts_;
};

} // namespace orvanta::pipewire
