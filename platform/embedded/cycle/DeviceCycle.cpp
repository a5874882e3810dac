#include "platform/embedded/cycle/DeviceCycle.h"

#include "core/platform/RealTimeSection.h"
#include "platform/embedded/cycle/ChannelMix.h"

#include <algorithm>

namespace orvanta::embedded {

namespace {

void renderPrograms(DevicePlan& plan) noexcept {
    for (ProgramPlan& program : plan.programs) {
        if (!program.playing)
            continue;
        program.voice->render(program.block, plan.sampleRate);
        if (program.audible)
            addToDevice(program.block, program.channels, plan.mix, plan.channels);
    }
}

void layOut(std::span<const float> stereo, BufferLayout layout,
            std::vector<float>* first) noexcept {
    if (layout == BufferLayout::interleaved) {
        std::copy(stereo.begin(), stereo.end(), first[0].begin());
        return;
    }
    for (std::size_t index = 0; index < stereo.size(); ++index)
        first[index % 2][index / 2] = stereo[index];
}

void fillInputs(DevicePlan& plan, ClientPlan& client) noexcept {
    client.inputs.reset();
    for (const TapPlan& tap : client.taps) {
        std::fill(plan.stereo.begin(), plan.stereo.end(), 0.0F);
        for (const std::size_t index : tap.programs) {
            const ProgramPlan& program = plan.programs[index];
            if (program.playing)
                addStereoMixdown(program.block, program.channels, plan.stereo);
        }
        layOut(plan.stereo, client.tapLayout, client.inputs.memory.data() + tap.firstBuffer);
    }
}

void addOutputs(DevicePlan& plan, const ClientPlan& client) noexcept {
    const std::size_t channels = plan.channels;
    const bool planar = plan.layout == BufferLayout::planar;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const float* from = planar ? client.outputs.memory[channel].data()
                                   : client.outputs.memory[0].data() + channel;
        const std::size_t stride = planar ? 1 : channels;
        const float gain = client.volume ? client.volume->gain(channel) : 1.0F;
        for (std::size_t frame = 0; frame < plan.frames; ++frame)
            plan.mix[frame * channels + channel] += gain * from[frame * stride];
    }
}

void callClient(DevicePlan& plan, ClientPlan& client, const AudioTimeStamp& now) noexcept {
    IOClient& io = *client.client;
    if (!io.isStarted())
        return;
    fillInputs(plan, client);
    client.outputs.reset();
    const AudioBufferList input{client.inputs.buffers};
    AudioBufferList output{client.outputs.buffers};
    {
        const RealTimeSection section;
        io.client().proc(io.device(), &now, &input, &now, &output, &now, io.client().clientData);
    }
    io.noteServed(client.start);
    addOutputs(plan, client);
}

bool hasLiveInput(const DevicePlan& plan, const ClientPlan& client) noexcept {
    return std::any_of(client.taps.begin(), client.taps.end(), [&](const TapPlan& tap) {
        return std::any_of(tap.programs.begin(), tap.programs.end(),
                           [&](std::size_t index) { return plan.programs[index].playing; });
    });
}

bool needsCall(const DevicePlan& plan, const ClientPlan& client) noexcept {
    return client.client->isStarted() &&
           (hasLiveInput(plan, client) || !client.client->isAtRest(client.start));
}

void applyVolume(DevicePlan& plan) noexcept {
    for (std::size_t channel = 0; channel < plan.channels; ++channel) {
        const float gain = plan.io->volume.gain(channel);
        if (gain == 1.0F)
            continue;
        for (std::size_t index = channel; index < plan.mix.size(); index += plan.channels)
            plan.mix[index] *= gain;
    }
}

void capture(DevicePlan& plan) {
    if (plan.tape)
        plan.tape->append(plan.mix);
    if (plan.recorder)
        plan.recorder->write(plan.mix);
}

} // namespace

void runCycle(DevicePlan& plan, Rest rest) noexcept {
    const AudioTimeStamp now{static_cast<double>(plan.io->timeline.sampleTime()),
                             plan.io->timeline.nextStart()};
    std::fill(plan.mix.begin(), plan.mix.end(), 0.0F);
    renderPrograms(plan);
    for (ClientPlan& client : plan.clients) {
        if (rest == Rest::ignored || needsCall(plan, client))
            callClient(plan, client, now);
    }
    applyVolume(plan);
    capture(plan);
    plan.io->timeline.advance(plan.frames);
    plan.io->cycles.fetch_add(1, std::memory_order_relaxed);
}

bool needsCycle(const DevicePlan& plan) noexcept {
    return std::any_of(plan.programs.begin(), plan.programs.end(),
                       [](const ProgramPlan& program) { return program.playing; }) ||
           std::any_of(plan.clients.begin(), plan.clients.end(),
                       [&](const ClientPlan& client) { return needsCall(plan, client); });
}

} // namespace orvanta::embedded
