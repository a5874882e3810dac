#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvanta::crash {

/// What a program was ended by.
struct UncaughtException {
    /// The exception's type as it is written in C++.
    std::string name;
    /// `what()`; nothing where the exception has none.
    std::optional<std::string> reason = std::nullopt;
    /// The newest call first.
    std::vector<std::string> callStackSymbols{};
};

/// Of the exception that is being handled; "std::terminate" when there is none, as when a thread
/// that was not waited for is destroyed.
[[nodiscard]] std::string currentExceptionName();
[[nodiscard]] std::optional<std::string> currentExceptionReason();

/// May throw.
using UncaughtExceptionHandler = void (*)(const UncaughtException&);

/// Calls the handler when the program is about to be ended by `std::terminate`, on the thread that
/// this happens to; what stood there before has its turn afterwards, and then the program aborts.
/// Of threads that are ended at the same time only the first is told of, and the others wait for
/// it, though not for ever.
void setUncaughtExceptionHandler(UncaughtExceptionHandler handler) noexcept;

} // namespace orvanta::crash
