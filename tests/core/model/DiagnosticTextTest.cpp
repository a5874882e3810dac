#include "core/model/DiagnosticText.h"

#include "tests/support/ScriptedProcesses.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(DiagnosticText, GivesANumberAPlaceAtLeast) {
    EXPECT_EQ(diagnosticText(0.0F), "0.0");
    EXPECT_EQ(diagnosticText(1.0F), "1.0");
    EXPECT_EQ(diagnosticText(-2.0F), "-2.0");
    EXPECT_EQ(diagnosticText(0.35F), "0.35");
    EXPECT_EQ(diagnosticText(1e-7F), "1e-07");
}

TEST(DiagnosticText, ListsProcessesInTheirOrder) {
    EXPECT_EQ(diagnosticText(PIDSet{}), "[]");
    EXPECT_EQ(diagnosticText(PIDSet{9, 7, 8}), "[7, 8, 9]");
}

TEST(DiagnosticText, ListsApplicationsByName) {
    const ScriptedWorkspace workspace;
    EXPECT_EQ(diagnosticText(std::vector<AudioApp>{}), "");
    EXPECT_EQ(
        diagnosticText(std::vector<AudioApp>{{workspace, 1, 7, "Music", std::nullopt, true},
                                             {workspace, 2, 3, "Video", std::nullopt, false}}),
        "Music:7,Video:3");
}

} // namespace
} // namespace orvanta::test
