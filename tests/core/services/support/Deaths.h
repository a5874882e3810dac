#pragma once

#include <string>

namespace orvanta::test {

/// What an audio program might throw.
class Mixer {
public:
    struct DeviceLost {};
};

/// Ends the program as told; returns when there is no such death:
///   raise-11            raises that signal
///   segmentation, bus-error, division, illegal-instruction, breakpoint
///                       makes the processor or the system raise it; the latter three on x86 only
///   stack-overflow
///   runtime-error, own-exception, number, nameless-reason, broken-what, memory
///                       throws, and nobody catches
///   forgotten-thread    destroys a thread that was not waited for
void dieOf(const std::string& cause);

/// Known by name in call stacks.
[[noreturn]] void loseTheDevice();

} // namespace orvanta::test
