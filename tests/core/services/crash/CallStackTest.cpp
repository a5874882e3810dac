#include "core/services/crash/CallStack.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::crash {

/// Not hidden in a namespace without a name, for those have no dynamic symbols.
__attribute__((noinline)) std::vector<std::string> callsSeenFromInnermost(bool fromItsCaller) {
    auto calls = callStackSymbols(fromItsCaller ? __builtin_return_address(0) : nullptr);
    // Something to do afterwards, or the call would become a jump.
    calls.emplace_back("end");
    return calls;
}

__attribute__((noinline)) std::vector<std::string> callsSeenFromMiddle(bool fromItsCaller) {
    auto calls = callsSeenFromInnermost(fromItsCaller);
    calls.emplace_back("middle's end");
    return calls;
}

namespace {

using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::MatchesRegex;

constexpr const char* kInnermost =
    "^orvanta_crash_tests orvanta::crash::callsSeenFromInnermost[^ ]*\\(bool\\) \\+ [0-9]+$";
constexpr const char* kMiddle =
    "^orvanta_crash_tests orvanta::crash::callsSeenFromMiddle[^ ]*\\(bool\\) \\+ [0-9]+$";

TEST(CallStack, NamesCallsByModuleAndSymbol) {
    const auto calls = callsSeenFromMiddle(false);
    EXPECT_THAT(calls, Contains(ContainsRegex(kInnermost)));
    EXPECT_THAT(calls, Contains(ContainsRegex(kMiddle)));
    EXPECT_THAT(calls, Contains(ContainsRegex("^libc\\.so\\.6 __libc_start_main")));
}

TEST(CallStack, BeginsWhereItIsToldTo) {
    const auto calls = callsSeenFromMiddle(true);
    EXPECT_THAT(calls.front(), ContainsRegex(kMiddle));
}

TEST(CallStack, GivesTheAddressOfWhatHasNoSymbol) {
    // The test's own body is in a namespace without a name.
    EXPECT_THAT(callStackSymbols(nullptr),
                Contains(MatchesRegex("orvanta_crash_tests 0x[0-9a-f]+ \\(\\+0x[0-9a-f]+\\)")));
}

TEST(CallStack, NamesModulesWithoutTheirFolders) {
    for (const std::string& call : callStackSymbols(nullptr))
        EXPECT_EQ(call.substr(0, call.find(' ')).find('/'), std::string::npos) << call;
}

TEST(CallStack, LeavesNamesThatAreNotMangledAsTheyAre) {
    EXPECT_EQ(demangled("main"), "main");
    EXPECT_EQ(demangled("St6vectorIiSaIiEE"), "std::vector<int, std::allocator<int> >");
}

} // namespace
} // namespace orvanta::crash
