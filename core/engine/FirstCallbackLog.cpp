#include "core/engine/FirstCallbackLog.h"

namespace orvanta {

FirstCallbackLog::FirstCallbackLog(const Logger& logger)
    : logger_(logger), writer_([this] { runWriter(); }) {}

FirstCallbackLog::~FirstCallbackLog() {
    isEnding_.store(true, std::memory_order_release);
    wakeUps_.fetch_add(1, std::memory_order_release);
    wakeUps_.notify_one();
    writer_.join();
    flush();
}

void FirstCallbackLog::post(const FirstCallback& record) noexcept {
    for (Slot& slot : slots_) {
        SlotState expected = SlotState::empty;
        if (!slot.state.compare_exchange_strong(
                expected, SlotState::claimed, std::memory_order_acquire, std::memory_order_relaxed))
            continue;
        slot.record = record;
        slot.state.store(SlotState::filled, std::memory_order_release);
        wakeUps_.fetch_add(1, std::memory_order_release);
        wakeUps_.notify_one();
        return;
    }
}

void FirstCallbackLog::flush() {
    const std::scoped_lock guard(writing_);
    for (Slot& slot : slots_) {
        if (slot.state.load(std::memory_order_acquire) != SlotState::filled)
            continue;
        const FirstCallback record = slot.record;
        slot.state.store(SlotState::empty, std::memory_order_release);
        logger_.debug("Audio buffers: in=%ldsamp/%ldch out=%ldsamp/%ldch bufs=%ldin/%ldout",
                      record.inSamples, record.inChannels, record.outSamples, record.outChannels,
                      record.inBuffers, record.outBuffers);
    }
}

void FirstCallbackLog::runWriter() {
    int seen = 0;
    while (!isEnding_.load(std::memory_order_acquire)) {
        wakeUps_.wait(seen, std::memory_order_acquire);
        seen = wakeUps_.load(std::memory_order_acquire);
        flush();
    }
}

} // namespace orvanta
