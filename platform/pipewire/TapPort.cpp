#include "platform/pipewire/TapPort.h"

#include "platform/pipewire/TapCycle.h"
#include "platform/pipewire/TapParams.h"

#include <pipewire/keys.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <sys/mman.h>
#include <utility>

namespace orvanta::pipewire {
namespace {

// Places in the list of the port's parameters.
constexpr std::size_t kFormatParam = 2;
constexpr std::size_t kBuffersParam = 3;
constexpr std::size_t kLatencyParam = 4;

} // namespace

TapPort::TapPort(ControlLoop& loop, spa_direction direction, std::uint32_t number, std::string name,
                 std::string channel)
    : loop_(loop),
      direction_(direction),
      number_(number),
      name_(std::move(name)),
      channel_(std::move(channel)) {
    params_[0] = makeParamInfo(SPA_PARAM_EnumFormat, SPA_PARAM_INFO_READ);
    params_[1] = makeParamInfo(SPA_PARAM_IO, SPA_PARAM_INFO_READ);
    params_[kFormatParam] = makeParamInfo(SPA_PARAM_Format, SPA_PARAM_INFO_WRITE);
    params_[kBuffersParam] = makeParamInfo(SPA_PARAM_Buffers, 0);
    params_[kLatencyParam] = makeParamInfo(SPA_PARAM_Latency, SPA_PARAM_INFO_READWRITE);
    items_[0] = {PW_KEY_FORMAT_DSP, "32 bit float mono audio"};
    items_[1] = {PW_KEY_PORT_NAME, name_.c_str()};
    items_[2] = {PW_KEY_AUDIO_CHANNEL, channel_.c_str()};
    dict_ = {0, static_cast<std::uint32_t>(items_.size()), items_.data()};
    info_.flags = SPA_PORT_FLAG_NO_REF;
    info_.props = &dict_;
    info_.params = params_.data();
    info_.n_params = static_cast<std::uint32_t>(params_.size());
}

TapPort::~TapPort() {
    unmap(buffers_);
}

const spa_port_info* TapPort::info(bool inFull) {
    info_.change_mask = SPA_PORT_CHANGE_MASK_PARAMS;
    if (inFull)
        info_.change_mask |= SPA_PORT_CHANGE_MASK_FLAGS | SPA_PORT_CHANGE_MASK_PROPS;
    return &info_;
}

void TapPort::latencyChanged() {
    params_[kLatencyParam].flags ^= SPA_PARAM_INFO_SERIAL;
}

void TapPort::setFormat(bool hasFormat) {
    hasFormat_ = hasFormat;
    params_[kFormatParam].flags = hasFormat ? SPA_PARAM_INFO_READWRITE : SPA_PARAM_INFO_WRITE;
    params_[kBuffersParam].flags = hasFormat ? SPA_PARAM_INFO_READ : 0;
    if (!hasFormat)
        useBuffers(nullptr, 0);
}

int TapPort::useBuffers(spa_buffer** buffers, std::uint32_t count) {
    Buffers next;
    next.count = std::min(count, kMaxBuffers);
    for (std::uint32_t index = 0; index < next.count; ++index) {
        next.buffers[index] = buffers[index];
        if (const int result = map(next, index); result < 0) {
            unmap(next);
            return result;
        }
        next.free[next.freeCount++] = index;
    }
    Buffers previous;
    loop_.onDataThread([&] {
        previous = buffers_;
        buffers_ = next;
    });
    unmap(previous);
    return 0;
}

int TapPort::map(Buffers& set, std::uint32_t index) {
    if (set.buffers[index]->n_datas == 0)
        return -EINVAL;
    const spa_data& data = set.buffers[index]->datas[0];
    if (data.data != nullptr) {
        set.samples[index] = static_cast<float*>(data.data);
        return 0;
    }
    if (data.type != SPA_DATA_MemFd)
        return -EINVAL;
    const std::size_t length = std::size_t{data.maxsize} + data.mapoffset;
    void* address =
        ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, static_cast<int>(data.fd), 0);
    if (address == MAP_FAILED)
        return -errno;
    set.mappings[index] = {address, length};
    set.samples[index] =
        reinterpret_cast<float*>(static_cast<std::byte*>(address) + data.mapoffset);
    return 0;
}

void TapPort::unmap(Buffers& set) {
    for (Mapping& mapping : set.mappings)
        if (mapping.address != nullptr)
            ::munmap(mapping.address, mapping.length);
    set = {};
}

void TapPort::setIo(spa_io_buffers* io) {
    loop_.onDataThread([&] { io_ = io; });
}

void TapPort::reset() {
    isAnnounced = false;
    setFormat(false);
    setIo(nullptr);
}

float* TapPort::takeInput(std::uint32_t frames) noexcept {
    if (io_ == nullptr)
        return nullptr;
    float* samples = nullptr;
    if (io_->status == SPA_STATUS_HAVE_DATA && io_->buffer_id < buffers_.count) {
        // The address is another one in every cycle where several streams are mixed.
        const spa_data& data = buffers_.buffers[io_->buffer_id]->datas[0];
        const std::uint32_t offset = data.chunk->offset;
        const std::uint64_t wanted = std::uint64_t{frames} * sizeof(float);
        if (data.data != nullptr && data.chunk->size >= wanted && offset + wanted <= data.maxsize)
            samples = reinterpret_cast<float*>(static_cast<std::byte*>(data.data) + offset);
    }
    io_->status = SPA_STATUS_NEED_DATA;
    return samples;
}

float* TapPort::claimOutput(std::uint32_t frames) noexcept {
    if (io_ == nullptr || buffers_.count == 0)
        return nullptr;
    if (io_->buffer_id < buffers_.count)
        recycle(io_->buffer_id);
    io_->buffer_id = SPA_ID_INVALID;
    io_->status = SPA_STATUS_NEED_DATA;
    if (buffers_.freeCount == 0)
        return nullptr;
    // The one that has been free longest: who reads late still reads whole samples.
    const std::uint32_t index = buffers_.free[0];
    std::copy_n(buffers_.free.begin() + 1, --buffers_.freeCount, buffers_.free.begin());
    const spa_data& data = buffers_.buffers[index]->datas[0];
    const std::uint64_t size = std::uint64_t{frames} * sizeof(float);
    if (size > data.maxsize) {
        recycle(index);
        return nullptr;
    }
    *data.chunk = {0, static_cast<std::uint32_t>(size), sizeof(float), 0};
    io_->buffer_id = index;
    io_->status = SPA_STATUS_HAVE_DATA;
    return buffers_.samples[index];
}

void TapPort::recycle(std::uint32_t buffer) noexcept {
    if (buffer >= buffers_.count || buffers_.freeCount >= kMaxBuffers)
        return;
    const auto* const end = buffers_.free.begin() + buffers_.freeCount;
    if (std::find(std::as_const(buffers_.free).begin(), end, buffer) == end)
        buffers_.free[buffers_.freeCount++] = buffer;
}

} // namespace orvanta::pipewire
