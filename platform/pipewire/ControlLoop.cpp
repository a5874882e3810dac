#include "platform/pipewire/ControlLoop.h"

#include <pipewire/pipewire.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orvanta::pipewire {
namespace {

void initialiseLibraryOnce() {
    static std::once_flag once;
    std::call_once(once, [] { pw_init(nullptr, nullptr); });
}

/// When a program opens a stream, the session manager and this thread hear of it at the same time;
/// a tapped program stays silent only if this thread is the faster one. Not being allowed to is no
/// reason to complain.
int raisePriority(spa_loop*, bool, std::uint32_t, const void*, std::size_t, void*) {
    constexpr int kLowestRealTimePriority = 1;
    constexpr int kNice = -11;
    sched_param parameters{};
    parameters.sched_priority = kLowestRealTimePriority;
    if (::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &parameters) != 0)
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNice);
    return 0;
}

} // namespace

ControlLoop::Lock::Lock(ControlLoop& loop) : loop_(loop) {
    if (loop_.thread_ != nullptr)
        pw_thread_loop_lock(loop_.thread_);
}

ControlLoop::Lock::~Lock() {
    if (loop_.thread_ != nullptr)
        pw_thread_loop_unlock(loop_.thread_);
}

ControlLoop::ControlLoop() {
    initialiseLibraryOnce();
    thread_ = pw_thread_loop_new("orvanta-pw", nullptr);
    if (thread_ == nullptr)
        return;
    // This configuration loads the module that gives the data thread its real-time priority.
    context_ =
        pw_context_new(loop(), pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
}

ControlLoop::~ControlLoop() {
    stop();
    if (context_ != nullptr)
        pw_context_destroy(context_);
    if (thread_ != nullptr)
        pw_thread_loop_destroy(thread_);
}

bool ControlLoop::start() {
    if (!isUsable() || pw_thread_loop_start(thread_) < 0)
        return false;
    pw_loop_invoke(loop(), raisePriority, 0, nullptr, 0, false, nullptr);
    return true;
}

void ControlLoop::stop() {
    if (thread_ != nullptr)
        pw_thread_loop_stop(thread_);
}

pw_loop* ControlLoop::loop() const {
    return pw_thread_loop_get_loop(thread_);
}

pw_data_loop* ControlLoop::dataLoop() const {
    return pw_context_get_data_loop(context_);
}

void ControlLoop::changed() {
    pw_thread_loop_signal(thread_, false);
}

bool ControlLoop::waitFor(const std::function<bool()>& done, std::chrono::milliseconds bound) {
    timespec deadline{};
    pw_thread_loop_get_time(thread_, &deadline, std::chrono::nanoseconds(bound).count());
    while (!done())
        if (pw_thread_loop_timed_wait_full(thread_, &deadline) < 0)
            return done();
    return true;
}

void ControlLoop::onDataThread(const std::function<void()>& work) const {
    // The way there and back orders memory, but inside a library that thread sanitizers cannot look
    // into; the two flags say the same where they can.
    struct Call {
        const std::function<void()>& work;
        std::atomic<bool> isPosted{false};
        std::atomic<bool> isDone{false};
    } call{work};

    const auto run = [](spa_loop*, bool, std::uint32_t, const void*, std::size_t, void* data) {
        auto& posted = *static_cast<Call*>(data);
        static_cast<void>(posted.isPosted.load(std::memory_order_acquire));
        posted.work();
        posted.isDone.store(true, std::memory_order_release);
        return 0;
    };
    call.isPosted.store(true, std::memory_order_release);
    pw_data_loop_invoke(dataLoop(), run, 0, nullptr, 0, true, &call);
    static_cast<void>(call.isDone.load(std::memory_order_acquire));
}

ControlTimer::ControlTimer(ControlLoop& loop, std::function<void()> fired)
    : loop_(loop), fired_(std::move(fired)) {
    const auto expired = [](void* data, std::uint64_t) {
        auto& timer = *static_cast<ControlTimer*>(data);
        timer.isSet_ = false;
        timer.fired_();
    };
    source_ = pw_loop_add_timer(loop_.loop(), expired, this);
}

ControlTimer::~ControlTimer() {
    if (source_ != nullptr)
        pw_loop_destroy_source(loop_.loop(), source_);
}

void ControlTimer::set(std::chrono::milliseconds delay) {
    if (source_ == nullptr)
        return;
    // All zeros would disarm the timer, so "at once" is the shortest time there is.
    const auto nanoseconds = std::max<std::int64_t>(1, std::chrono::nanoseconds(delay).count());
    timespec value{};
    value.tv_sec = nanoseconds / 1'000'000'000;
    value.tv_nsec = nanoseconds % 1'000'000'000;
    isSet_ = true;
    pw_loop_update_timer(loop_.loop(), source_, &value, nullptr, false);
}

void ControlTimer::cancel() {
    if (source_ == nullptr)
        return;
    isSet_ = false;
    timespec never{};
    pw_loop_update_timer(loop_.loop(), source_, &never, nullptr, false);
}

ControlEvent::ControlEvent(ControlLoop& loop, std::function<void()> happened)
    : loop_(loop), happened_(std::move(happened)) {
    const auto call = [](void* data, std::uint64_t) {
        static_cast<ControlEvent*>(data)->happened_();
    };
    source_ = pw_loop_add_event(loop_.loop(), call, this);
}

ControlEvent::~ControlEvent() {
    if (source_ != nullptr)
        pw_loop_destroy_source(loop_.loop(), source_);
}

void ControlEvent::signal() noexcept {
    if (source_ != nullptr)
        pw_loop_signal_event(loop_.loop(), source_);
}

ControlWatch::ControlWatch(ControlLoop& loop, int descriptor, std::function<void()> readable)
    : loop_(loop), readable_(std::move(readable)) {
    const auto ready = [](void* data, int, std::uint32_t) {
        auto& watch = *static_cast<ControlWatch*>(data);
        pw_loop_update_io(watch.loop_.loop(), watch.source_, 0);
        // The function may well destroy this watch.
        const auto function = watch.readable_;
        function();
    };
    source_ = pw_loop_add_io(loop_.loop(), descriptor, SPA_IO_IN, true, ready, this);
    if (source_ == nullptr)
        ::close(descriptor);
}

ControlWatch::~ControlWatch() {
    if (source_ != nullptr)
        pw_loop_destroy_source(loop_.loop(), source_);
}

} // namespace orvanta::pipewire
