#pragma once

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

    /// The server's id of the node, nothing until it has given one.
    [[nodiscard]] std::optional<std::uint32_t> id() const { return id_; }

    /// Whether somebody has taken the node out of the server.
    [[nodiscard]] bool isLost() const { return lost_; }

private:
    friend struct ExportEvents;

    TapNode& node_;
    std::function<void()> changed_;
    pw_proxy* proxy_ = nullptr;
    spa_hook hook_{};
    std::optional<std::uint32_t> id_;
    bool lost_ = false;
};

} // namespace orvanta::pipewire
