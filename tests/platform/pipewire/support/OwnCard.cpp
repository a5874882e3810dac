#include "tests/platform/pipewire/support/OwnCard.h"

#include <pipewire/pipewire.h>
#include <spa/monitor/device.h>
#include <spa/monitor/utils.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <vector>

namespace orvanta::test {

struct OwnCard::State {
    Properties properties;
    std::atomic<std::uint32_t> id{SPA_ID_INVALID};
    pw_thread_loop* loop = nullptr;
    pw_context* context = nullptr;
    pw_core* core = nullptr;
    pw_proxy* proxy = nullptr;
    spa_hook proxyHook{};
    spa_device device{};
    spa_hook_list hooks{};

    ~State() {
        if (loop != nullptr)
            pw_thread_loop_stop(loop);
        if (proxy != nullptr)
            pw_proxy_destroy(proxy);
        if (core != nullptr)
            pw_core_disconnect(core);
        if (context != nullptr)
            pw_context_destroy(context);
        if (loop != nullptr)
            pw_thread_loop_destroy(loop);
    }

    static int addListener(void* object, spa_hook* listener, const spa_device_events* events,
                           void* data) {
        auto& self = *static_cast<State*>(object);
        spa_hook_list others{};
        spa_hook_list_isolate(&self.hooks, &others, listener, events, data);
        std::vector<spa_dict_item> items;
        for (const auto& [key, value] : self.properties)
            items.push_back({key.c_str(), value.c_str()});
        const spa_dict dictionary{0, static_cast<std::uint32_t>(items.size()), items.data()};
        spa_device_info info{};
        info.version = SPA_VERSION_DEVICE_INFO;
        info.change_mask = SPA_DEVICE_CHANGE_MASK_PROPS;
        info.props = &dictionary;
        spa_device_emit_info(&self.hooks, &info);
        spa_hook_list_join(&self.hooks, &others);
        return 0;
    }

    static int sync(void* object, int sequence) {
        spa_device_emit_result(&static_cast<State*>(object)->hooks, sequence, 0, 0, nullptr);
        return 0;
    }

    static int enumParams(void*, int, std::uint32_t, std::uint32_t, std::uint32_t, const spa_pod*) {
        return -ENOENT;
    }

    static int setParam(void*, std::uint32_t, std::uint32_t, const spa_pod*) { return -ENOENT; }

    static void bound(void* data, std::uint32_t id) { static_cast<State*>(data)->id = id; }

    static constexpr spa_device_methods methods{SPA_VERSION_DEVICE_METHODS, addListener, sync,
                                                enumParams, setParam};

    static constexpr pw_proxy_events makeEvents() {
        pw_proxy_events events{};
        events.version = PW_VERSION_PROXY_EVENTS;
        events.bound = bound;
        return events;
    }
};

OwnCard::OwnCard(const Properties& properties) : state_(std::make_unique<State>()) {
    static constexpr pw_proxy_events events = State::makeEvents();
    pw_init(nullptr, nullptr);
    State& state = *state_;
    state.properties = properties;
    spa_hook_list_init(&state.hooks);
    state.device.iface = {SPA_TYPE_INTERFACE_Device, SPA_VERSION_DEVICE, {&State::methods, &state}};
    state.loop = pw_thread_loop_new("own-card", nullptr);
    state.context = pw_context_new(pw_thread_loop_get_loop(state.loop), nullptr, 0);
    state.core = pw_context_connect(state.context, nullptr, 0);
    if (state.core == nullptr)
        throw std::runtime_error("no server to offer a card to");
    const spa_dict_item item{PW_KEY_MEDIA_CLASS, "Audio/Device"};
    const spa_dict dictionary{0, 1, &item};
    state.proxy =
        pw_core_export(state.core, SPA_TYPE_INTERFACE_Device, &dictionary, &state.device, 0);
    if (state.proxy == nullptr)
        throw std::runtime_error("a card cannot be offered");
    pw_proxy_add_listener(state.proxy, &state.proxyHook, &events, &state);
    pw_thread_loop_start(state.loop);
    if (!eventually(Seconds(10), [&] { return id() != SPA_ID_INVALID; }))
        throw std::runtime_error("the server does not take the card");
}

OwnCard::~OwnCard() = default;

std::uint32_t OwnCard::id() const {
    return state_->id;
}

} // namespace orvanta::test
