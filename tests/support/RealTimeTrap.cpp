#include "tests/support/RealTimeTrap.h"

#include "core/platform/RealTimeSection.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/futex.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

// The initial-exec model reads the word without a call that could itself allocate.
__attribute__((tls_model("initial-exec"))) thread_local int sectionDepth = 0;
std::atomic<std::uint64_t> sectionsEntered{0};

void say(const char* text) noexcept {
    [[maybe_unused]] const long written = syscall(SYS_write, 2, text, std::strlen(text));
}

/// To be called first thing by everything that a real-time thread may not do.
void forbid(const char* call) noexcept {
    if (sectionDepth == 0)
        return;
    sectionDepth = 0; // abort itself may do what it likes
    say("real-time trap: the IO thread called ");
    say(call);
    say("\n");
    std::abort();
}

/// The C library's own function behind the one that is defined here.
template <class Function>
Function* behind(const char* name) noexcept {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

namespace orvanta::test {

std::uint64_t realTimeSectionsEntered() noexcept {
    return sectionsEntered.load(std::memory_order_relaxed);
}

} // namespace orvanta::test

extern "C" {

void orvantaRealTimeSectionEntered() noexcept {
    ++sectionDepth;
    sectionsEntered.fetch_add(1, std::memory_order_relaxed);
}

void orvantaRealTimeSectionLeft() noexcept {
    --sectionDepth;
}

// ---- allocation: glibc offers the functions behind these under names of their own

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
    forbid("malloc");
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    forbid("calloc");
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    forbid("realloc");
    return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    forbid("memalign");
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    forbid("aligned_alloc");
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** out, std::size_t alignment, std::size_t size) {
    forbid("posix_memalign");
    *out = __libc_memalign(alignment, size);
    return *out == nullptr ? ENOMEM : 0;
}

void free(void* block) {
    if (block != nullptr)
        forbid("free");
    __libc_free(block);
}

// ---- locks and waiting

#define ORVANTA_FORBID(result, name, parameters, arguments)                                        \
    result name parameters {                                                                       \
        forbid(#name);                                                                             \
        static auto* const next = behind<result parameters>(#name);                                \
        return next arguments;                                                                     \
    }

ORVANTA_FORBID(int, pthread_mutex_lock, (pthread_mutex_t * mutex), (mutex))
ORVANTA_FORBID(int, pthread_rwlock_rdlock, (pthread_rwlock_t * lock), (lock))
ORVANTA_FORBID(int, pthread_rwlock_wrlock, (pthread_rwlock_t * lock), (lock))
ORVANTA_FORBID(int, pthread_join, (pthread_t thread, void** result), (thread, result))
ORVANTA_FORBID(int, sem_wait, (sem_t * semaphore), (semaphore))
ORVANTA_FORBID(int, sem_timedwait, (sem_t * semaphore, const timespec* until), (semaphore, until))
ORVANTA_FORBID(int, pthread_mutex_timedlock, (pthread_mutex_t * mutex, const timespec* until),
               (mutex, until))
ORVANTA_FORBID(int, nanosleep, (const timespec* wanted, timespec* left), (wanted, left))
ORVANTA_FORBID(int, clock_nanosleep,
               (clockid_t clock, int flags, const timespec* wanted, timespec* left),
               (clock, flags, wanted, left))
ORVANTA_FORBID(int, usleep, (useconds_t time), (time))
ORVANTA_FORBID(int, poll, (pollfd * files, nfds_t count, int timeout), (files, count, timeout))
ORVANTA_FORBID(int, ppoll,
               (pollfd * files, nfds_t count, const timespec* timeout, const sigset_t* mask),
               (files, count, timeout, mask))
ORVANTA_FORBID(int, epoll_wait, (int epoll, epoll_event* events, int count, int timeout),
               (epoll, events, count, timeout))
ORVANTA_FORBID(int, select,
               (int count, fd_set* reading, fd_set* writing, fd_set* failing, timeval* timeout),
               (count, reading, writing, failing, timeout))

// ---- files, sockets, memory maps

ORVANTA_FORBID(ssize_t, read, (int file, void* data, std::size_t size), (file, data, size))
ORVANTA_FORBID(ssize_t, write, (int file, const void* data, std::size_t size), (file, data, size))
ORVANTA_FORBID(ssize_t, readv, (int file, const iovec* parts, int count), (file, parts, count))
ORVANTA_FORBID(ssize_t, writev, (int file, const iovec* parts, int count), (file, parts, count))
ORVANTA_FORBID(ssize_t, send, (int file, const void* data, std::size_t size, int flags),
               (file, data, size, flags))
ORVANTA_FORBID(ssize_t, recv, (int file, void* data, std::size_t size, int flags),
               (file, data, size, flags))
ORVANTA_FORBID(int, close, (int file), (file))
ORVANTA_FORBID(int, fsync, (int file), (file))
ORVANTA_FORBID(void*, mmap,
               (void* place, std::size_t size, int protection, int flags, int file, off_t offset),
               (place, size, protection, flags, file, offset))
ORVANTA_FORBID(int, munmap, (void* place, std::size_t size), (place, size))

int open(const char* path, int flags, ...) {
    forbid("open");
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = static_cast<mode_t>(va_arg(arguments, unsigned));
    va_end(arguments);
    static auto* const next = behind<int(const char*, int, ...)>("open");
    return next(path, flags, mode);
}

/// Bare system calls: what the language's own waiting on atomics uses. Waking is not waiting.
long syscall(long number, ...) {
    va_list arguments;
    va_start(arguments, number);
    std::array<long, 6> values{};
    for (long& value : values)
        value = va_arg(arguments, long);
    va_end(arguments);
    const long futexOperation = values[1] & FUTEX_CMD_MASK;
    if (number == SYS_futex &&
        (futexOperation == FUTEX_WAIT || futexOperation == FUTEX_WAIT_BITSET))
        forbid("futex wait");
    static auto* const next = behind<long(long, ...)>("syscall");
    return next(number, values[0], values[1], values[2], values[3], values[4], values[5]);
}

} // extern "C"
