#pragma once

#include <cstdint>
#include <vector>

struct spa_pod;
struct spa_pod_builder;

namespace orvanta::pipewire {

/// The channel factors in a `Props` object, empty if it says nothing about them.
std::vector<float> channelVolumesIn(const spa_pod* props);

/// A `Props` object that sets the channel factors and nothing else, inside `builder`'s memory.
/// `paramId` is the parameter it will be set as or stand in.
spa_pod* buildChannelVolumes(spa_pod_builder& builder, std::uint32_t paramId,
                             const std::vector<float>& volumes);

} // namespace orvanta::pipewire
