#include "platform/pipewire/TapNode.h"

#include "platform/pipewire/TapParams.h"

#include <spa/node/utils.h>
#include <spa/param/param.h>
#include <spa/pod/filter.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace orvanta::pipewire {
namespace {

/// The server needs some milliseconds to give a fresh link its buffers.
constexpr std::uint64_t kStarvation = 250'000'000;

} // namespace

/// The server's way of calling a node: a table of functions that get the node as their first
/// argument.
struct TapNodeMethods {
    static TapNode& self(void* object) { return *static_cast<TapNode*>(object); }

    static int addListener(void* object, spa_hook* listener, const spa_node_events* events,
                           void* data) {
        return self(object).addListener(listener, events, data);
    }

    static int setCallbacks(void*, const spa_node_callbacks*, void*) { return 0; }

    static int sync(void* object, int sequence) {
        spa_node_emit_result(&self(object).hooks_, sequence, 0, 0, nullptr);
        return 0;
    }

    static int enumParams(void* object, int sequence, std::uint32_t id, std::uint32_t start,
                          std::uint32_t, const spa_pod* filter) {
        return self(object).enumerateParams(sequence, id, start, filter);
    }

    static int setParam(void* object, std::uint32_t id, std::uint32_t, const spa_pod*) {
        return self(object).setParam(id);
    }

    static int setIo(void* object, std::uint32_t id, void* data, std::size_t size) {
        return self(object).setIo(id, data, size);
    }

    static int sendCommand(void* object, const spa_command* command) {
        return self(object).command(command);
    }

    static int addPort(void*, spa_direction, std::uint32_t, const spa_dict*) { return -ENOTSUP; }

    static int removePort(void*, spa_direction, std::uint32_t) { return -ENOTSUP; }

    static int portEnumParams(void* object, int sequence, spa_direction direction,
                              std::uint32_t number, std::uint32_t id, std::uint32_t start,
                              std::uint32_t count, const spa_pod* filter) {
        TapPort* port = self(object).port(direction, number);
        return port == nullptr
                   ? -EINVAL
                   : self(object).enumeratePortParams(sequence, *port, id, start, count, filter);
    }

    static int portSetParam(void* object, spa_direction direction, std::uint32_t number,
                            std::uint32_t id, std::uint32_t, const spa_pod* param) {
        TapPort* port = self(object).port(direction, number);
        return port == nullptr ? -EINVAL : self(object).setPortParam(*port, id, param);
    }

    static int portUseBuffers(void* object, spa_direction direction, std::uint32_t number,
                              std::uint32_t, spa_buffer** buffers, std::uint32_t count) {
        TapPort* port = self(object).port(direction, number);
        return port == nullptr ? -EINVAL : port->useBuffers(buffers, count);
    }

    static int portSetIo(void* object, spa_direction direction, std::uint32_t number,
                         std::uint32_t id, void* data, std::size_t size) {
        TapPort* port = self(object).port(direction, number);
        if (port == nullptr)
            return -EINVAL;
        if (id != SPA_IO_Buffers)
            return -ENOENT;
        port->setIo(size >= sizeof(spa_io_buffers) ? static_cast<spa_io_buffers*>(data) : nullptr);
        return 0;
    }

    static int portReuseBuffer(void* object, std::uint32_t number, std::uint32_t buffer) {
        TapPort* port = self(object).port(SPA_DIRECTION_OUTPUT, number);
        if (port == nullptr)
            return -EINVAL;
        port->recycle(buffer);
        return 0;
    }

    static int process(void* object) { return self(object).process(); }

    static constexpr spa_node_methods make() {
        spa_node_methods methods{};
        methods.version = SPA_VERSION_NODE_METHODS;
        methods.add_listener = addListener;
        methods.set_callbacks = setCallbacks;
        methods.sync = sync;
        methods.enum_params = enumParams;
        methods.set_param = setParam;
        methods.set_io = setIo;
        methods.send_command = sendCommand;
        methods.add_port = addPort;
        methods.remove_port = removePort;
        methods.port_enum_params = portEnumParams;
        methods.port_set_param = portSetParam;
        methods.port_use_buffers = portUseBuffers;
        methods.port_set_io = portSetIo;
        methods.port_reuse_buffer = portReuseBuffer;
        methods.process = process;
        return methods;
    }
};

TapNode::TapNode(ControlLoop& loop, TapCycle& cycle, SilentCycles& silentCycles,
                 std::function<void()> starved)
    : loop_(loop),
      cycle_(cycle),
      silentCycles_(silentCycles),
      inputs_{{{loop, SPA_DIRECTION_INPUT, 0, "playback_FL", "FL"},
               {loop, SPA_DIRECTION_INPUT, 1, "playback_FR", "FR"}}},
      outputs_{{{loop, SPA_DIRECTION_OUTPUT, 0, "output_FL", "FL"},
                {loop, SPA_DIRECTION_OUTPUT, 1, "output_FR", "FR"}}},
      starved_(loop, std::move(starved)) {
    static constexpr spa_node_methods methods = TapNodeMethods::make();
    node_.iface = {SPA_TYPE_INTERFACE_Node, SPA_VERSION_NODE, {&methods, this}};
    spa_hook_list_init(&hooks_);
    params_[0] = makeParamInfo(SPA_PARAM_EnumFormat, SPA_PARAM_INFO_READ);
    params_[1] = makeParamInfo(SPA_PARAM_Format, SPA_PARAM_INFO_WRITE);
    params_[2] = makeParamInfo(SPA_PARAM_PortConfig, SPA_PARAM_INFO_READWRITE);
    info_.max_input_ports = kChannels;
    info_.max_output_ports = kChannels;
    info_.flags = SPA_NODE_FLAG_RT;
    info_.params = params_.data();
    info_.n_params = static_cast<std::uint32_t>(params_.size());
    latencies_[SPA_DIRECTION_INPUT].direction = SPA_DIRECTION_INPUT;
    latencies_[SPA_DIRECTION_OUTPUT].direction = SPA_DIRECTION_OUTPUT;
}

void TapNode::reset() {
    for (TapPort& port : inputs_)
        port.reset();
    for (TapPort& port : outputs_)
        port.reset();
    isConfigured_ = false;
    setIo(SPA_IO_Position, nullptr, 0);
    loop_.onDataThread([this] { starvedFor_ = 0; });
    silentCycles_.graphPaused();
}

int TapNode::addListener(spa_hook* listener, const spa_node_events* events, void* data) {
    spa_hook_list others{};
    spa_hook_list_isolate(&hooks_, &others, listener, events, data);
    info_.change_mask = SPA_NODE_CHANGE_MASK_FLAGS | SPA_NODE_CHANGE_MASK_PARAMS;
    spa_node_emit_info(&hooks_, &info_);
    for (TapPort& port : inputs_)
        if (port.isAnnounced)
            emit(port, true);
    for (TapPort& port : outputs_)
        if (port.isAnnounced)
            emit(port, true);
    spa_hook_list_join(&hooks_, &others);
    return 0;
}

int TapNode::enumerateParams(int sequence, std::uint32_t id, std::uint32_t start,
                             const spa_pod* filter) {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    if (start > 0)
        return 0;
    spa_pod* param = buildNodeParam(builder, id, isConfigured_);
    if (param == nullptr)
        return -ENOENT;
    emitParam(sequence, id, start, param, filter);
    return 0;
}

int TapNode::setParam(std::uint32_t id) {
    if (id == SPA_PARAM_Format)
        return 0;
    if (id != SPA_PARAM_PortConfig)
        return -ENOENT;
    isConfigured_ = true;
    // The session manager waits for the ports to change, and links nothing at all meanwhile. So
    // inputs that it has seen before go and come again.
    for (TapPort& port : inputs_) {
        withdraw(port);
        announce(port);
    }
    for (TapPort& port : outputs_)
        if (!port.isAnnounced)
            announce(port);
    return 0;
}

int TapNode::setIo(std::uint32_t id, void* data, std::size_t size) {
    if (id != SPA_IO_Position)
        return 0;
    const auto* position =
        size >= sizeof(spa_io_position) ? static_cast<const spa_io_position*>(data) : nullptr;
    loop_.onDataThread([&] { position_ = position; });
    return 0;
}

int TapNode::command(const spa_command* command) {
    const auto id = SPA_NODE_COMMAND_ID(command);
    if (id == SPA_NODE_COMMAND_Pause || id == SPA_NODE_COMMAND_Suspend)
        silentCycles_.graphPaused();
    return 0;
}

int TapNode::enumeratePortParams(int sequence, TapPort& port, std::uint32_t id, std::uint32_t start,
                                 std::uint32_t count, const spa_pod* filter) {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    if (id == SPA_PARAM_Latency) {
        for (std::uint32_t index = start; index < latencies_.size() && count > 0; ++index) {
            spa_pod_builder_init(&builder, memory.data(), memory.size());
            spa_pod* param = buildLatency(builder, id, latencies_[index]);
            if (emitParam(sequence, id, index, param, filter))
                --count;
        }
        return 0;
    }
    if (start > 0)
        return 0;
    if (id == SPA_PARAM_Format && !port.hasFormat())
        return -EIO;
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_pod* param = buildPortParam(builder, id);
    if (param == nullptr)
        return -ENOENT;
    emitParam(sequence, id, start, param, filter);
    return 0;
}

int TapNode::setPortParam(TapPort& port, std::uint32_t id, const spa_pod* param) {
    if (id == SPA_PARAM_Latency)
        return setLatency(port, param);
    if (id != SPA_PARAM_Format)
        return -ENOENT;
    port.setFormat(param != nullptr);
    emit(port, false);
    return 0;
}

/// What the device behind the outputs delays is what the program in front of the inputs must know,
/// and the other way round: a tap itself delays nothing.
int TapNode::setLatency(const TapPort& port, const spa_pod* param) {
    spa_latency_info latency{};
    latency.direction =
        port.direction() == SPA_DIRECTION_INPUT ? SPA_DIRECTION_OUTPUT : SPA_DIRECTION_INPUT;
    if (param != nullptr && spa_latency_parse(param, &latency) < 0)
        return -EINVAL;
    spa_latency_info& known = latencies_[latency.direction];
    if (latency.direction == port.direction() || spa_latency_info_compare(&known, &latency) == 0)
        return 0;
    known = latency;
    for (TapPort& other : latency.direction == SPA_DIRECTION_INPUT ? inputs_ : outputs_) {
        other.latencyChanged();
        if (other.isAnnounced)
            emit(other, false);
    }
    return 0;
}

int TapNode::process() noexcept {
    CycleTime time = cycle_.lastTime();
    if (position_ != nullptr) {
        const spa_io_clock& clock = position_->clock;
        if (clock.duration != 0)
            time.frames =
                static_cast<std::uint32_t>(std::min<std::uint64_t>(clock.duration, kMaxFrames));
        if (clock.rate.denom != 0)
            time.rate = clock.rate.denom;
        time.sampleTime = static_cast<double>(clock.position);
        time.hostTime = clock.nsec;
    }
    CycleBuffers buffers;
    for (std::size_t channel = 0; channel < kChannels; ++channel) {
        buffers.input[channel] = inputs_[channel].takeInput(time.frames);
        buffers.output[channel] = outputs_[channel].claimOutput(time.frames);
    }
    cycle_.run(time, buffers);
    silentCycles_.graphRan();
    watchBuffers(time.nanoseconds());
    return SPA_STATUS_NEED_DATA | SPA_STATUS_HAVE_DATA;
}

/// A server that suspends a node while a link to it is being set up, as it does to change its rate,
/// may hand buffers to a port that has lost its format. They are refused, and it takes the link for
/// sound all the same.
void TapNode::watchBuffers(std::uint64_t nanoseconds) noexcept {
    const auto lacks = [](const TapPort& port) {
        return port.lacksBuffers();
    };
    if (!std::ranges::any_of(inputs_, lacks) && !std::ranges::any_of(outputs_, lacks)) {
        starvedFor_ = 0;
        return;
    }
    starvedFor_ += nanoseconds;
    if (starvedFor_ < kStarvation)
        return;
    starvedFor_ = 0;
    starved_.signal();
}

TapPort* TapNode::port(spa_direction direction, std::uint32_t number) {
    if (number >= kChannels)
        return nullptr;
    return direction == SPA_DIRECTION_INPUT ? &inputs_[number] : &outputs_[number];
}

void TapNode::announce(TapPort& port) {
    port.isAnnounced = true;
    emit(port, true);
}

void TapNode::withdraw(TapPort& port) {
    if (!port.isAnnounced)
        return;
    spa_node_emit_port_info(&hooks_, port.direction(), port.number(), nullptr);
    port.reset();
}

void TapNode::emit(TapPort& port, bool inFull) {
    spa_node_emit_port_info(&hooks_, port.direction(), port.number(), port.info(inFull));
}

bool TapNode::emitParam(int sequence, std::uint32_t id, std::uint32_t index, spa_pod* param,
                        const spa_pod* filter) {
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_result_node_params result{};
    result.id = id;
    result.index = index;
    result.next = index + 1;
    if (param == nullptr || spa_pod_filter(&builder, &result.param, param, filter) < 0)
        return false;
    spa_node_emit_result(&hooks_, sequence, 0, SPA_RESULT_TYPE_NODE_PARAMS, &result);
    return true;
}

} // namespace orvanta::pipewire
