#include "platform/pipewire/DeviceLinks.h"

#include <pipewire/link.h>
#include <pipewire/pipewire.h>

#include <algorithm>
#include <array>

namespace orvanta::pipewire {
namespace {

const ServerPort* withChannel(const std::vector<const ServerPort*>& ports,
                              std::string_view channel) {
    const auto found = std::find_if(ports.begin(), ports.end(), [&](const ServerPort* port) {
        return port->channel == channel;
    });
    return found == ports.end() ? nullptr : *found;
}

} // namespace

LinkPlan planLinks(std::uint32_t tapNode, const std::vector<const ServerPort*>& tapPorts,
                   std::uint32_t deviceNode, const std::vector<const ServerPort*>& devicePorts) {
    LinkPlan plan;
    std::vector<const ServerPort*> outputs;
    std::vector<const ServerPort*> inputs;
    std::copy_if(tapPorts.begin(), tapPorts.end(), std::back_inserter(outputs),
                 [](const ServerPort* port) { return !port->isInput && !port->isMonitor; });
    std::copy_if(devicePorts.begin(), devicePorts.end(), std::back_inserter(inputs),
                 [](const ServerPort* port) { return port->isInput && !port->isMonitor; });
    const ServerPort* left = withChannel(outputs, "FL");
    const ServerPort* right = withChannel(outputs, "FR");
    if (left == nullptr || right == nullptr || inputs.empty())
        return plan;

    plan.outputNode = tapNode;
    plan.inputNode = deviceNode;
    plan.isMono = inputs.size() == 1;
    if (plan.isMono) {
        plan.pairs = {{left->id, inputs[0]->id}};
        return plan;
    }
    const ServerPort* leftInput = withChannel(inputs, "FL");
    const ServerPort* rightInput = withChannel(inputs, "FR");
    if (leftInput == nullptr || rightInput == nullptr) {
        leftInput = inputs[0];
        rightInput = inputs[1];
    }
    plan.pairs = {{left->id, leftInput->id}, {right->id, rightInput->id}};
    return plan;
}

struct DeviceLinks::Link {
    DeviceLinks* owner = nullptr;
    pw_proxy* proxy = nullptr;
    spa_hook linkHook{};
    spa_hook proxyHook{};
    bool ready = false;
    bool lost = false;

    ~Link() {
        if (proxy == nullptr)
            return;
        spa_hook_remove(&linkHook);
        spa_hook_remove(&proxyHook);
        pw_proxy_destroy(proxy);
    }
};

struct LinkEvents {
    static void info(void* data, const pw_link_info* info) {
        auto& link = *static_cast<DeviceLinks::Link*>(data);
        link.ready = info->state >= PW_LINK_STATE_PAUSED;
        if (info->state == PW_LINK_STATE_ERROR)
            link.lost = true;
        link.owner->changed_();
    }

    static void lost(void* data) {
        auto& link = *static_cast<DeviceLinks::Link*>(data);
        link.lost = true;
        link.ready = false;
        link.owner->changed_();
    }

    static void error(void* data, int, int, const char*) { lost(data); }

    static constexpr pw_proxy_events makeProxyEvents() {
        pw_proxy_events events{};
        events.version = PW_VERSION_PROXY_EVENTS;
        events.removed = lost;
        events.error = error;
        return events;
    }
};

DeviceLinks::DeviceLinks(std::function<void()> changed)
    : changed_(std::move(changed)), attempts_(5, std::chrono::seconds(1)) {}

DeviceLinks::~DeviceLinks() = default;

void DeviceLinks::clear() {
    links_.clear();
    plan_ = {};
}

bool DeviceLinks::areReady() const {
    return !links_.empty() && links_.size() == plan_.pairs.size() &&
           std::all_of(links_.begin(), links_.end(), [](const auto& link) { return link->ready; });
}

bool DeviceLinks::follow(pw_core* core, const LinkPlan& plan) {
    static constexpr pw_link_events linkEvents{PW_VERSION_LINK_EVENTS, LinkEvents::info};
    static constexpr pw_proxy_events proxyEvents = LinkEvents::makeProxyEvents();
    const bool anyLost =
        links_.size() != plan_.pairs.size() ||
        std::any_of(links_.begin(), links_.end(), [](const auto& link) { return link->lost; });
    if (plan == plan_ && !anyLost)
        return true;
    if (plan == plan_ && !attempts_.allow(std::chrono::steady_clock::now()))
        return false;

    // Old ones first. Were the tap linked to two devices, even for a moment, the server would make
    // one of them follow the other's clock, and everybody who plays there would hear it.
    links_.clear();
    plan_ = plan;
    for (const LinkPlan::Pair& pair : plan.pairs) {
        const std::array<std::string, 4> ids{
            std::to_string(plan.outputNode), std::to_string(pair.output),
            std::to_string(plan.inputNode), std::to_string(pair.input)};
        const std::array<spa_dict_item, 6> items{{
            {PW_KEY_LINK_OUTPUT_NODE, ids[0].c_str()},
            {PW_KEY_LINK_OUTPUT_PORT, ids[1].c_str()},
            {PW_KEY_LINK_INPUT_NODE, ids[2].c_str()},
            {PW_KEY_LINK_INPUT_PORT, ids[3].c_str()},
            {PW_KEY_LINK_PASSIVE, "true"},
            {PW_KEY_OBJECT_LINGER, "false"},
        }};
        const spa_dict properties{0, static_cast<std::uint32_t>(items.size()), items.data()};
        auto link = std::make_unique<Link>();
        link->owner = this;
        link->proxy = static_cast<pw_proxy*>(pw_core_create_object(
            core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties, 0));
        if (link->proxy == nullptr)
            continue;
        pw_proxy_add_listener(link->proxy, &link->proxyHook, &proxyEvents, link.get());
        pw_proxy_add_object_listener(link->proxy, &link->linkHook, &linkEvents, link.get());
        links_.push_back(std::move(link));
    }
    return true;
}

} // namespace orvanta::pipewire
