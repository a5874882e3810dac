#include "platform/pipewire/ExportedTap.h"

#include <pipewire/pipewire.h>

#include <array>

namespace orvanta::pipewire {

struct ExportEvents {
    static void bound(void* data, std::uint32_t id) {
        auto& tap = *static_cast<ExportedTap*>(data);
        tap.id_ = id;
        tap.changed_();
    }

    static void lost(void* data) {
        auto& tap = *static_cast<ExportedTap*>(data);
        tap.id_.reset();
        tap.lost_ = true;
        tap.changed_();
    }

    static void error(void* data, int, int, const char*) { lost(data); }

    static constexpr pw_proxy_events make() {
        pw_proxy_events events{};
        events.version = PW_VERSION_PROXY_EVENTS;
        events.bound = bound;
        events.removed = lost;
        events.error = error;
        return events;
    }
};

ExportedTap::ExportedTap(pw_core* core, TapNode& node, const std::string& name,
                         const std::string& description, std::function<void()> changed)
    : node_(node), changed_(std::move(changed)) {
    static constexpr pw_proxy_events events = ExportEvents::make();
    // The session manager links programs to sinks only, and the PulseAudio bridge finishes the
    // creation of a stream only when it is linked to a node of exactly this class. It must never
    // become the default device, though, so it has a lower priority than a device without any.
    std::array<spa_dict_item, 7> items{{
        {PW_KEY_NODE_NAME, name.c_str()},
        {PW_KEY_NODE_DESCRIPTION, description.c_str()},
        {PW_KEY_MEDIA_CLASS, "Audio/Sink"},
        {PW_KEY_MEDIA_TYPE, "Audio"},
        {PW_KEY_NODE_VIRTUAL, "true"},
        {PW_KEY_PRIORITY_SESSION, "-10000"},
        // WirePlumber 0.4 suspends a node five seconds after it fell idle, also one that has left
        // meanwhile, and crashes then. There is nothing to suspend in this one.
        {"session.suspend-timeout-seconds", "0"},
    }};
    const spa_dict properties{0, static_cast<std::uint32_t>(items.size()), items.data()};
    proxy_ = pw_core_export(core, SPA_TYPE_INTERFACE_Node, &properties, node_.interface(), 0);
    if (proxy_ == nullptr)
        lost_ = true;
    else
        pw_proxy_add_listener(proxy_, &hook_, &events, this);
}

ExportedTap::~ExportedTap() {
    if (proxy_ != nullptr) {
        spa_hook_remove(&hook_);
        pw_proxy_destroy(proxy_);
    }
    node_.reset();
}

void ExportedTap::leave(ServerMirror& mirror) {
    isLeaving_ = true;
    // The server takes no order about what it has not told of yet.
    if (isDestroyed_ || !id_ || mirror.nodeWithId(*id_) == nullptr)
        return;
    mirror.destroy(*id_);
    isDestroyed_ = true;
}

} // namespace orvanta::pipewire
