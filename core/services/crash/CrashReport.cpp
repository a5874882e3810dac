#include "core/services/crash/CrashReport.h"

#include "core/services/crash/UTF8.h"

#include <fmt/format.h>

#include <cstddef>

namespace orvanta::crash {
namespace {

constexpr int kRuleLength = 51;
constexpr std::string_view kRuleCharacter = "═";

std::string rule() {
    std::string line;
    for (int count = 0; count < kRuleLength; ++count)
        line += kRuleCharacter;
    return line;
}

} // namespace

std::string crashReport(const HostInfo& host, std::string_view timestamp,
                        const UncaughtException& exception) {
    const std::string line = rule();
    std::string text = fmt::format("{}\nOrvanta Crash Report\n{}\n", line, line);
    text += fmt::format("Timestamp: {}\n", timestamp);
    text += fmt::format("App Version: {} ({})\n", host.shortVersion.value_or("?"),
                        host.bundleVersion.value_or("?"));
    text += fmt::format("macOS: {}\n", host.operatingSystemVersion);
    text += "Type: EXCEPTION\n";
    text += fmt::format("Reason: {}: {}\n", exception.name, exception.reason.value_or("unknown"));
    text += "\nCall Stack:\n";
    for (std::size_t index = 0; index < exception.callStackSymbols.size(); ++index)
        text += fmt::format("  {}: {}\n", index, exception.callStackSymbols[index]);
    text += "\n" + line;
    // A reason may be in any encoding, and a report that is no UTF-8 would not be mailed.
    return madeUTF8(text);
}

} // namespace orvanta::crash
