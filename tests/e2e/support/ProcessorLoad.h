#pragma once

#include "tests/support/ChildProcess.h"

#include <memory>
#include <vector>

namespace orvanta::test {

/// Keeps processors busy with endless loops at normal priority, for as long as it lives.
class ProcessorLoad {
public:
    explicit ProcessorLoad(int processes) {
        for (int index = 0; index < processes; ++index)
            hogs_.push_back(std::make_unique<ChildProcess>(
                ChildProcess::Launch{.command = {"sh", "-c", "while :; do :; done"}}));
    }

private:
    std::vector<std::unique_ptr<ChildProcess>> hogs_;
};

} // namespace orvanta::test
