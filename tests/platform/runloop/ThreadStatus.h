#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

namespace orvanta::test {

/// The system's id of the calling thread.
[[nodiscard]] pid_t thisThreadID();

/// A field of the kernel's status of a thread of this process, such as "Name"; empty when there is
/// none.
[[nodiscard]] std::string statusOf(pid_t thread, const std::string& field);

/// Whether the thread sleeps in the kernel.
[[nodiscard]] bool isAsleep(pid_t thread);

/// How often the thread has gone to sleep of its own accord: each wake-up ends in one more.
[[nodiscard]] long timesPutToSleep(pid_t thread);

/// Polls until the condition holds; false when it does not within a minute.
[[nodiscard]] bool becomesTrue(const std::function<bool()>& condition);

} // namespace orvanta::test
