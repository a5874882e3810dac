#pragma once

#include <sys/types.h>
#include <vector>

namespace orvanta::test {

/// Children, their children and so on, as they are now; no order. Processes of other users too.
std::vector<pid_t> descendantsOf(pid_t ancestor);

/// False for a process that has ended and only waits for its parent to notice.
bool isProcessAlive(pid_t pid);

} // namespace orvanta::test
