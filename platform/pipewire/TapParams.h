#pragma once

#include <spa/param/latency-utils.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>

#include <cstdint>

/// What a tap's node and its ports answer when they are asked for their parameters. Everything is
/// built in the builder's memory; null for parameters they do not have.
namespace orvanta::pipewire {

/// `isConfigured`: whether the session manager has chosen how the ports are to be.
spa_pod* buildNodeParam(spa_pod_builder& builder, std::uint32_t id, bool isConfigured);

/// Of ports, all but the latency.
spa_pod* buildPortParam(spa_pod_builder& builder, std::uint32_t id);

/// An entry in a list of the parameters that there are.
inline spa_param_info makeParamInfo(std::uint32_t id, std::uint32_t flags) {
    spa_param_info info{};
    info.id = id;
    info.flags = flags;
    return info;
}

spa_pod* buildLatency(spa_pod_builder& builder, std::uint32_t id, const spa_latency_info& latency);

} // namespace orvanta::pipewire
