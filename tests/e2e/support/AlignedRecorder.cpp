#include "tests/e2e/support/AlignedRecorder.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <unistd.h>

namespace orvanta::test {

namespace {

constexpr std::size_t framesPerSecond = 48000;
constexpr std::size_t mostCycles = 200000;

std::string uniqueName() {
    static std::atomic<int> count{0};
    return "e2e-recorder-" + std::to_string(getpid()) + "-" + std::to_string(++count);
}

} // namespace

Capture Capture::from(std::size_t firstFrame) const {
    Capture part;
    part.sampleRate = sampleRate;
    for (const std::vector<float>& channel : channels)
        part.channels.emplace_back(
            channel.begin() + static_cast<std::ptrdiff_t>(std::min(firstFrame, channel.size())),
            channel.end());
    for (Cycle cycle : cycles)
        if (cycle.firstFrame >= firstFrame) {
            cycle.firstFrame -= firstFrame;
            part.cycles.push_back(cycle);
        }
    return part;
}

std::size_t Capture::discontinuities() const {
    return static_cast<std::size_t>(std::ranges::count_if(cycles, &Cycle::isDiscontinuous));
}

/// The recording node. Its process function runs on the audio thread; the frames it has written
/// are published by `frames_`, and everything is read by others only after it was disconnected.
class AlignedRecorder::Filter {
public:
    Filter(std::size_t inputs, const Settings& settings) : name_(uniqueName()) {
        const auto capacity = static_cast<std::size_t>(settings.capacity.count() * framesPerSecond);
        capture_.channels.assign(inputs, std::vector<float>(capacity));
        capture_.cycles.reserve(mostCycles);
        pw_init(nullptr, nullptr);
        loop_ = pw_thread_loop_new("e2e-recorder", nullptr);
        // The configuration of real-time clients: the recorder must not be what comes late.
        context_ =
            pw_context_new(pw_thread_loop_get_loop(loop_),
                           pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
        core_ = pw_context_connect(context_, nullptr, 0);
        static const pw_filter_events events = [] {
            pw_filter_events table = {};
            table.version = PW_VERSION_FILTER_EVENTS;
            table.process = [](void* data, spa_io_position* position) {
                static_cast<Filter*>(data)->process(*position);
            };
            return table;
        }();
        filter_ =
            pw_filter_new(core_, name_.c_str(),
                          pw_properties_new(PW_KEY_NODE_NAME, name_.c_str(), PW_KEY_NODE_PASSIVE,
                                            settings.keepsGraphAwake ? "false" : "true",
                                            PW_KEY_NODE_ALWAYS_PROCESS, "true", nullptr));
        pw_filter_add_listener(filter_, &listener_, &events, this);
        for (std::size_t input = 0; input < inputs; ++input)
            ports_.push_back(pw_filter_add_port(
                filter_, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*),
                pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                                  ("in_" + std::to_string(input)).c_str(), nullptr),
                nullptr, 0));
        pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
        pw_thread_loop_start(loop_);
    }

    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    ~Filter() {
        disconnect();
        pw_deinit();
    }

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] std::size_t frames() const { return frames_.load(std::memory_order_acquire); }

    Capture finish() {
        disconnect();
        for (std::vector<float>& channel : capture_.channels)
            channel.resize(frames());
        return std::move(capture_);
    }

private:
    void process(const spa_io_position& position) noexcept {
        const auto count = static_cast<std::uint32_t>(position.clock.duration);
        const std::size_t start = frames_.load(std::memory_order_relaxed);
        const bool hasRoom =
            start + count <= capture_.channels[0].size() && capture_.cycles.size() < mostCycles;
        for (std::size_t input = 0; input < ports_.size(); ++input) {
            const auto* samples =
                static_cast<const float*>(pw_filter_get_dsp_buffer(ports_[input], count));
            if (hasRoom && samples != nullptr)
                std::copy_n(samples, count, capture_.channels[input].data() + start);
        }
        if (!hasRoom)
            return;
        capture_.sampleRate = position.clock.rate.denom;
        const bool runsOn = start == 0 || position.clock.position == nextPosition_;
        capture_.cycles.push_back({start, count, monotonicSeconds(), !runsOn});
        nextPosition_ = position.clock.position + count;
        frames_.store(start + count, std::memory_order_release);
    }

    void disconnect() {
        if (loop_ == nullptr)
            return;
        pw_thread_loop_lock(loop_);
        pw_filter_destroy(filter_);
        pw_core_disconnect(core_);
        pw_context_destroy(context_);
        pw_thread_loop_unlock(loop_);
        pw_thread_loop_stop(loop_);
        pw_thread_loop_destroy(loop_);
        loop_ = nullptr;
    }

    std::string name_;
    Capture capture_;
    std::atomic<std::size_t> frames_{0};
    std::uint64_t nextPosition_ = 0;
    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
    pw_core* core_ = nullptr;
    pw_filter* filter_ = nullptr;
    spa_hook listener_ = {};
    std::vector<void*> ports_;
};

AlignedRecorder::AlignedRecorder(const AudioGraph& graph, std::size_t inputs, Settings settings)
    : graph_(graph), filter_(std::make_unique<Filter>(inputs, settings)) {
    graph_.await("the recorder has its ports", [&] {
        const auto node = graph_.node(filter_->name());
        inputPorts_ = node ? graph_.inputPorts(node->id) : std::vector<std::uint32_t>();
        return inputPorts_.size() == inputs;
    });
}

AlignedRecorder::~AlignedRecorder() = default;

void AlignedRecorder::listen(std::size_t input, std::uint32_t outputPort) const {
    graph_.link(outputPort, inputPorts_.at(input));
}

void AlignedRecorder::listen(std::size_t first,
                             const std::vector<std::uint32_t>& outputPorts) const {
    for (std::size_t index = 0; index < outputPorts.size(); ++index)
        listen(first + index, outputPorts[index]);
}

std::size_t AlignedRecorder::frames() const {
    return filter_->frames();
}

void AlignedRecorder::record(std::size_t moreFrames) const {
    const std::size_t wanted = frames() + moreFrames;
    const Seconds bound{10.0 + 3.0 * static_cast<double>(moreFrames) / framesPerSecond};
    graph_.await(
        "enough is recorded", [&] { return frames() >= wanted; }, bound);
}

Capture AlignedRecorder::finish() {
    return filter_->finish();
}

} // namespace orvanta::test
