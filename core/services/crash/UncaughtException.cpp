#include "core/services/crash/UncaughtException.h"

#include "core/services/crash/CallStack.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <thread>
#include <typeinfo>

namespace orvanta::crash {
namespace {

/// Far more than writing a report takes, and less than a user waits for a program to be gone.
constexpr std::chrono::seconds kLongestWaitForReport{5};

std::atomic<UncaughtExceptionHandler> tellOf{nullptr};
std::atomic<std::terminate_handler> handlerBefore{nullptr};
std::atomic_flag isReported = ATOMIC_FLAG_INIT;
thread_local bool isReportingThread = false;

/// Of the reporting thread. Never destroyed: the program may be ended while it ends by itself.
UncaughtException& lastWords() {
    static auto* const words = new UncaughtException;
    return *words;
}

int attempts = 0;

void report(const void* caller) noexcept {
    try {
        ++attempts;
        if (attempts == 1) {
            lastWords().callStackSymbols = callStackSymbols(caller);
            lastWords().name = currentExceptionName();
            // Runs code of whoever wrote the exception, which may end in `std::terminate` itself:
            // then the second attempt tells what was known before.
            lastWords().reason = currentExceptionReason();
        }
        const UncaughtExceptionHandler handler = tellOf.load();
        if (attempts <= 2 && handler != nullptr)
            handler(lastWords());
    } catch (...) {
        // Without a report, then. The signal that follows leaves its line.
    }
}

[[noreturn]] void onTerminate() {
    if (!isReported.test_and_set())
        isReportingThread = true;
    if (isReportingThread)
        report(__builtin_return_address(0));
    else
        // To go on would end the program in the middle of the other thread's report.
        std::this_thread::sleep_for(kLongestWaitForReport);
    if (const std::terminate_handler before = handlerBefore.load())
        before();
    std::abort();
}

} // namespace

std::string currentExceptionName() {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    return type != nullptr ? demangled(type->name()) : "std::terminate";
}

std::optional<std::string> currentExceptionReason() {
    // Also null for what is no exception of C++, such as a thread's cancellation, which must not be
    // caught for good.
    if (abi::__cxa_current_exception_type() == nullptr)
        return std::nullopt;
    try {
        throw;
    } catch (const std::exception& exception) {
        if (const char* const reason = exception.what())
            return reason;
    } catch (...) {
        // Whatever it is, it cannot be asked.
    }
    return std::nullopt;
}

void setUncaughtExceptionHandler(UncaughtExceptionHandler handler) noexcept {
    tellOf = handler;
    const std::terminate_handler before = std::set_terminate(onTerminate);
    if (before != onTerminate)
        handlerBefore = before;
}

} // namespace orvanta::crash
