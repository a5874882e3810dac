#pragma once

#include <chrono>
#include <functional>
#include <memory>

struct pw_context;
struct pw_data_loop;
struct pw_loop;
struct pw_thread_loop;
struct spa_source;

namespace orvanta::pipewire {

/// The thread on which everything of the server arrives, and the lock that orders it with calls
/// from other threads. Also the way onto the data thread, on which cycles run.
class ControlLoop {
public:
    /// Holds the lock for its lifetime.
    class Lock {
    public:
        explicit Lock(ControlLoop& loop);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        ControlLoop& loop_;
    };

    ControlLoop();
    ~ControlLoop();
    ControlLoop(const ControlLoop&) = delete;
    ControlLoop& operator=(const ControlLoop&) = delete;

    /// False where PipeWire's own configuration is not installed: then nothing else may be called.
    [[nodiscard]] bool isUsable() const { return context_ != nullptr; }

    /// Starts the thread. Until then the caller has everything to itself.
    bool start();
    void stop();

    [[nodiscard]] pw_context* context() const { return context_; }

    [[nodiscard]] pw_loop* loop() const;

    [[nodiscard]] pw_data_loop* dataLoop() const;

    /// Lets those who wait in `waitFor` look again. With the lock held.
    void changed();

    /// Releases the lock until `done` answers true or `bound` is over, and says what `done` said
    /// last. With the lock held exactly once, not on the loop's own thread.
    bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds bound);

    /// Runs `work` on the data thread between two cycles and returns when it has run. With the
    /// lock held: the way there has room for one at a time.
    void onDataThread(const std::function<void()>& work) const;

private:
    pw_thread_loop* thread_ = nullptr;
    pw_context* context_ = nullptr;
};

/// A timer of the control loop that fires once for every time it is set.
class ControlTimer {
public:
    /// With the lock held, like every other operation.
    ControlTimer(ControlLoop& loop, std::function<void()> fired);
    ~ControlTimer();
    ControlTimer(const ControlTimer&) = delete;
    ControlTimer& operator=(const ControlTimer&) = delete;

    /// False where the system had no descriptor left for it: then it never fires.
    [[nodiscard]] bool isUsable() const { return source_ != nullptr; }

    /// A delay of zero means: as soon as the loop turns to it.
    void set(std::chrono::milliseconds delay);
    void cancel();

    /// Whether it is going to fire.
    [[nodiscard]] bool isSet() const { return isSet_; }

private:
    ControlLoop& loop_;
    std::function<void()> fired_;
    spa_source* source_ = nullptr;
    bool isSet_ = false;
};

/// What another thread, the data thread included, wants done on the control loop.
class ControlEvent {
public:
    /// With the lock held, like the destructor.
    ControlEvent(ControlLoop& loop, std::function<void()> happened);
    ~ControlEvent();
    ControlEvent(const ControlEvent&) = delete;
    ControlEvent& operator=(const ControlEvent&) = delete;

    /// False where the system had no descriptor left for it: then it never happens.
    [[nodiscard]] bool isUsable() const { return source_ != nullptr; }

    /// From any thread, without waiting; several before the loop turns to it may count as one.
    void signal() noexcept;

private:
    ControlLoop& loop_;
    std::function<void()> happened_;
    spa_source* source_ = nullptr;
};

/// Tells once when a file descriptor becomes readable.
class ControlWatch {
public:
    /// With the lock held. Owns `descriptor` and closes it in the end.
    ControlWatch(ControlLoop& loop, int descriptor, std::function<void()> readable);
    ~ControlWatch();
    ControlWatch(const ControlWatch&) = delete;
    ControlWatch& operator=(const ControlWatch&) = delete;

    /// False where the system had no means for it: then it never tells.
    [[nodiscard]] bool isUsable() const { return source_ != nullptr; }

private:
    ControlLoop& loop_;
    std::function<void()> readable_;
    spa_source* source_ = nullptr;
};

} // namespace orvanta::pipewire
