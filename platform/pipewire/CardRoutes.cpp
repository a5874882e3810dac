#include "platform/pipewire/CardRoutes.h"

#include "platform/pipewire/ChannelVolumes.h"
#include "platform/pipewire/PropertyMap.h"

#include <pipewire/device.h>
#include <pipewire/pipewire.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>
#include <spa/pod/parser.h>

#include <array>

namespace orvanta::pipewire {

struct CardEvents {
    static void info(void* data, const pw_device_info* info) {
        auto& card = *static_cast<CardRoutes*>(data);
        PropertyMap properties;
        properties.merge(info->props);
        if (properties.has(PW_KEY_DEVICE_VENDOR_NAME))
            card.vendor_ = properties.text(PW_KEY_DEVICE_VENDOR_NAME);
        card.changed_();
    }

    static void param(void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                      const spa_pod* param) {
        auto& card = *static_cast<CardRoutes*>(data);
        if (id != SPA_PARAM_Route || param == nullptr)
            return;
        card.learn(param);
        card.changed_();
    }
};

CardRoutes::CardRoutes(pw_registry* registry, std::uint32_t id, std::function<void()> changed)
    : changed_(std::move(changed)) {
    static constexpr pw_device_events events{PW_VERSION_DEVICE_EVENTS, CardEvents::info,
                                             CardEvents::param};
    device_ = static_cast<pw_device*>(
        pw_registry_bind(registry, id, PW_TYPE_INTERFACE_Device, PW_VERSION_DEVICE, 0));
    if (device_ == nullptr)
        return;
    pw_device_add_listener(device_, &hook_, &events, this);
    std::array<std::uint32_t, 1> params{SPA_PARAM_Route};
    pw_device_subscribe_params(device_, params.data(), params.size());
}

CardRoutes::~CardRoutes() {
    if (device_ == nullptr)
        return;
    spa_hook_remove(&hook_);
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(device_));
}

void CardRoutes::learn(const spa_pod* param) {
    std::int32_t index = 0;
    std::int32_t profileDevice = 0;
    spa_pod* props = nullptr;
    if (spa_pod_parse_object(param, SPA_TYPE_OBJECT_ParamRoute, nullptr, SPA_PARAM_ROUTE_index,
                             SPA_POD_Int(&index), SPA_PARAM_ROUTE_device,
                             SPA_POD_Int(&profileDevice), SPA_PARAM_ROUTE_props,
                             SPA_POD_OPT_Pod(&props)) < 0 ||
        profileDevice < 0)
        return;
    routes_[static_cast<std::uint32_t>(profileDevice)] = {index, channelVolumesIn(props)};
}

std::vector<float> CardRoutes::channelVolumes(std::uint32_t profileDevice) const {
    const auto found = routes_.find(profileDevice);
    return found == routes_.end() ? std::vector<float>{} : found->second.channelVolumes;
}

bool CardRoutes::setChannelVolumes(std::uint32_t profileDevice, const std::vector<float>& volumes) {
    const auto found = routes_.find(profileDevice);
    if (found == routes_.end())
        return false;
    std::array<std::uint8_t, 2048> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamRoute, SPA_PARAM_Route);
    spa_pod_builder_add(&builder, SPA_PARAM_ROUTE_index, SPA_POD_Int(found->second.index),
                        SPA_PARAM_ROUTE_device, SPA_POD_Int(static_cast<int>(profileDevice)), 0);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_props, 0);
    buildChannelVolumes(builder, SPA_PARAM_Route, volumes);
    spa_pod_builder_add(&builder, SPA_PARAM_ROUTE_save, SPA_POD_Bool(true), 0);
    auto* param = static_cast<spa_pod*>(spa_pod_builder_pop(&builder, &frame));
    if (param == nullptr)
        return false;
    found->second.channelVolumes = volumes;
    pw_device_set_param(device_, SPA_PARAM_Route, 0, param);
    return true;
}

} // namespace orvanta::pipewire
