#pragma once

#include "tests/support/ScriptedDesktop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

/// A desktop of its own for each test, and questions that its workspace answers from a new look.
class LinuxWorkspaceTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string idOf(std::int32_t pid) {
        const auto application = lookedUp(pid);
        return application ? application->bundleIdentifier.value_or("(no id)") : "(none)";
    }

    [[nodiscard]] std::string nameOf(std::int32_t pid) {
        const auto application = lookedUp(pid);
        return application ? application->localizedName.value_or("(no name)") : "(none)";
    }

    [[nodiscard]] std::vector<std::int32_t> listedPIDs() {
        desktop_.nextPass();
        std::vector<std::int32_t> pids;
        for (const auto& application : desktop_.workspace.runningApplications())
            pids.push_back(application.processIdentifier);
        return pids;
    }

    ScriptedDesktop desktop_;
    ScriptedProc& proc_ = desktop_.proc;

private:
    [[nodiscard]] std::optional<RunningApplication> lookedUp(std::int32_t pid) {
        desktop_.nextPass();
        return desktop_.workspace.runningApplication(pid);
    }
};

} // namespace orvanta::test
