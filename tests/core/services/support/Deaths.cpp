#include "tests/core/services/support/Deaths.h"

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <map>
#include <new>
#include <stdexcept>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

namespace orvanta::test {
namespace {

constexpr const char* kRaise = "raise-";

volatile char* mappedPage(int protection, int flags, int file) {
    const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return static_cast<volatile char*>(mmap(nullptr, size, protection, flags, file, 0));
}

/// Not through null, of which a sanitizer would complain first.
void writeToForbiddenMemory() {
    *mappedPage(PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1) = 1;
}

void readBeyondTheEndOfAFile() {
    const int file = fileno(std::tmpfile());
    [[maybe_unused]] const volatile char byte = *mappedPage(PROT_READ, MAP_SHARED, file);
}

#if defined(__x86_64__)
void divideByZero() {
    // In the processor's own words: in C++ a compiler may make anything of it.
    asm volatile("xorl %%ecx, %%ecx\n\tmovl $1, %%eax\n\tcltd\n\tidivl %%ecx" ::
                     : "eax", "ecx", "edx", "cc");
}

void runAnIllegalInstruction() {
    asm volatile("ud2");
}

void runIntoABreakpoint() {
    asm volatile("int3");
}
#endif

volatile bool neverEnough = true;

// NOLINTNEXTLINE(misc-no-recursion): it is the point
int recurse(int depth) {
    volatile char room[1024] = {};
    room[depth % 1024] = 1;
    return neverEnough ? recurse(depth + 1) + room[0] : 0;
}

void overflowTheStack() {
    std::exit(recurse(0));
}

struct NamelessReason : std::exception {
    [[nodiscard]] const char* what() const noexcept override { return nullptr; }
};

[[noreturn]] __attribute__((noinline)) void refuse() {
    throw std::logic_error("there is no telling");
}

/// Cannot tell what it is without an exception of its own, which ends the program.
struct BrokenWhat : std::exception {
    [[nodiscard]] const char* what() const noexcept override { refuse(); }
};

void forgetAThread() {
    const std::thread forgotten([] {
        for (;;)
            pause();
    });
}

const std::map<std::string, std::function<void()>>& causes() {
    static const std::map<std::string, std::function<void()>> all {
        {"segmentation", writeToForbiddenMemory}, {"bus-error", readBeyondTheEndOfAFile},
#if defined(__x86_64__)
            {"division", divideByZero}, {"illegal-instruction", runAnIllegalInstruction},
            {"breakpoint", runIntoABreakpoint},
#endif
            {"stack-overflow", overflowTheStack},
            {"runtime-error",
             [] {
                 throw std::runtime_error("no such device: ½ \xff");
             }},
            {"own-exception", loseTheDevice},
            {"number",
             [] {
                 throw 42;
             }},
            {"nameless-reason",
             [] {
                 throw NamelessReason();
             }},
            {"broken-what",
             [] {
                 throw BrokenWhat();
             }},
            {"memory",
             [] {
                 throw std::bad_alloc();
             }},
            {"forgotten-thread", forgetAThread},
    };
    return all;
}

} // namespace

[[noreturn]] __attribute__((noinline)) void loseTheDevice() {
    throw Mixer::DeviceLost();
}

void dieOf(const std::string& cause) {
    if (cause.starts_with(kRaise))
        std::raise(std::stoi(cause.substr(std::string(kRaise).size())));
    else if (const auto found = causes().find(cause); found != causes().end())
        found->second();
}

} // namespace orvanta::test
