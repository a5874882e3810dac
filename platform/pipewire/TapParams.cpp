#include "platform/pipewire/TapParams.h"

#include "platform/pipewire/TapCycle.h"
#include "platform/pipewire/TapPort.h"

#include <spa/node/io.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/port-config.h>

namespace orvanta::pipewire {
namespace {

spa_pod* buildStereoFormat(spa_pod_builder& builder, std::uint32_t id) {
    spa_audio_info_raw format{};
    format.format = SPA_AUDIO_FORMAT_F32P;
    // A format must name a rate. It does not bind: ports of this kind run at the graph's rate.
    format.rate = 48000;
    format.channels = kChannels;
    format.position[0] = SPA_AUDIO_CHANNEL_FL;
    format.position[1] = SPA_AUDIO_CHANNEL_FR;
    return spa_format_audio_raw_build(&builder, id, &format);
}

spa_pod* buildMonoFormat(spa_pod_builder& builder, std::uint32_t id) {
    spa_audio_info_dsp format{};
    format.format = SPA_AUDIO_FORMAT_DSP_F32;
    return spa_format_audio_dsp_build(&builder, id, &format);
}

spa_pod* finish(spa_pod_builder& builder, spa_pod_frame& frame) {
    return static_cast<spa_pod*>(spa_pod_builder_pop(&builder, &frame));
}

spa_pod* buildPortConfig(spa_pod_builder& builder, std::uint32_t id, bool isConfigured) {
    const auto mode =
        isConfigured ? SPA_PARAM_PORT_CONFIG_MODE_dsp : SPA_PARAM_PORT_CONFIG_MODE_none;
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamPortConfig, id);
    spa_pod_builder_add(&builder, SPA_PARAM_PORT_CONFIG_direction, SPA_POD_Id(SPA_DIRECTION_INPUT),
                        SPA_PARAM_PORT_CONFIG_mode, SPA_POD_Id(mode), 0);
    return finish(builder, frame);
}

spa_pod* buildBuffers(spa_pod_builder& builder, std::uint32_t id) {
    constexpr int kSampleSize = sizeof(float);
    constexpr int kSize = static_cast<int>(kMaxFrames) * kSampleSize;
    constexpr int kCount = static_cast<int>(TapPort::kMaxBuffers);
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamBuffers, id);
    spa_pod_builder_add(&builder, SPA_PARAM_BUFFERS_buffers, SPA_POD_CHOICE_RANGE_Int(2, 1, kCount),
                        SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
                        SPA_POD_CHOICE_STEP_Int(kSize, kSampleSize, INT32_MAX, kSampleSize),
                        SPA_PARAM_BUFFERS_stride, SPA_POD_Int(kSampleSize), 0);
    return finish(builder, frame);
}

spa_pod* buildIo(spa_pod_builder& builder, std::uint32_t id) {
    constexpr int kSize = sizeof(spa_io_buffers);
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamIO, id);
    spa_pod_builder_add(&builder, SPA_PARAM_IO_id, SPA_POD_Id(SPA_IO_Buffers), SPA_PARAM_IO_size,
                        SPA_POD_Int(kSize), 0);
    return finish(builder, frame);
}

} // namespace

spa_pod* buildNodeParam(spa_pod_builder& builder, std::uint32_t id, bool isConfigured) {
    if (id == SPA_PARAM_EnumFormat)
        return buildStereoFormat(builder, id);
    if (id == SPA_PARAM_PortConfig)
        return buildPortConfig(builder, id, isConfigured);
    return nullptr;
}

spa_pod* buildPortParam(spa_pod_builder& builder, std::uint32_t id) {
    switch (id) {
    case SPA_PARAM_EnumFormat:
    case SPA_PARAM_Format:
        return buildMonoFormat(builder, id);
    case SPA_PARAM_Buffers:
        return buildBuffers(builder, id);
    case SPA_PARAM_IO:
        return buildIo(builder, id);
    default:
        return nullptr;
    }
}

spa_pod* buildLatency(spa_pod_builder& builder, std::uint32_t id, const spa_latency_info& latency) {
    return spa_latency_build(&builder, id, &latency);
}

} // namespace orvanta::pipewire
