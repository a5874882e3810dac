#pragma once

#include "platform/pipewire/ServerMirror.h"
#include "platform/pipewire/TapNode.h"

#include <spa/utils/hook.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

struct pw_core;
struct pw_proxy;

namespace orvanta::pipewire {

/// A tap's node in the server's hands, for as long as this object lives.
class ExportedTap {
public:
    /// With the lock held, like the destructor. `changed` is called when the server has given the
    /// node its id and when it has taken it away.
    ExportedTap(pw_core* core, TapNode& node, const std::string& name,
                const std::string& description, std::function<void()> changed);
    ~ExportedTap();
    ExportedTap(const ExportedTap&) = delete;
    ExportedTap& operator=(const ExportedTap&) = delete;

    /// The server's id of the node, nothing until it has given one and once the node is leaving.
    [[nodiscard]] std::optional<std::uint32_t> id() const {
        return isLeaving() ? std::nullopt : id_;
    }

    /// Whether the node is not in the server any more.
    [[nodiscard]] bool isLost() const { return lost_; }

    /// Has the server take the node out, which `isLost` tells in the end; to be called again after
    /// every change until then. Only then is this to be destroyed: PipeWire 0.3.65 does not close
    /// the descriptors that it gets for a node that is gone here.
    void leave(ServerMirror& mirror);

    [[nodiscard]] bool isLeaving() const { return isLeaving_; }

private:
    friend struct ExportEvents;

    TapNode& node_;
    std::function<void()> changed_;
    pw_proxy* proxy_ = nullptr;
    spa_hook hook_{};
    std::optional<std::uint32_t> id_;
    bool lost_ = false;
    bool isLeaving_ = false;
    bool isDestroyed_ = false;
};

} // namespace orvanta::pipewire
