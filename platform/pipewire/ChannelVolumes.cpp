#include "platform/pipewire/ChannelVolumes.h"

#include <spa/param/audio/raw.h>
#include <spa/param/param.h>
#include <spa/param/props.h>
#include <spa/pod/builder.h>
#include <spa/pod/iter.h>

#include <array>

namespace orvanta::pipewire {

std::vector<float> channelVolumesIn(const spa_pod* props) {
    if (props == nullptr)
        return {};
    const spa_pod_prop* property = spa_pod_find_prop(props, nullptr, SPA_PROP_channelVolumes);
    if (property == nullptr)
        return {};
    std::array<float, SPA_AUDIO_MAX_CHANNELS> volumes{};
    const std::uint32_t count =
        spa_pod_copy_array(&property->value, SPA_TYPE_Float, volumes.data(), volumes.size());
    return {volumes.begin(), volumes.begin() + count};
}

spa_pod* buildChannelVolumes(spa_pod_builder& builder, std::uint32_t paramId,
                             const std::vector<float>& volumes) {
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_Props, paramId);
    spa_pod_builder_prop(&builder, SPA_PROP_channelVolumes, 0);
    spa_pod_builder_array(&builder, sizeof(float), SPA_TYPE_Float,
                          static_cast<std::uint32_t>(volumes.size()), volumes.data());
    return static_cast<spa_pod*>(spa_pod_builder_pop(&builder, &frame));
}

} // namespace orvanta::pipewire
