#include "tests/e2e/support/TapHolder.h"

#include <sstream>
#include <stdexcept>

namespace orvanta::test {

namespace {

std::vector<std::string> commandFor(float volume, const std::vector<pid_t>& pids) {
    std::vector<std::string> command = {ORVANTA_TAP_HOLDER, std::to_string(volume)};
    for (const pid_t pid : pids)
        command.push_back(std::to_string(pid));
    return command;
}

} // namespace

TapHolder::TapHolder(float volume, const std::vector<pid_t>& pids)
    : program_({.command = commandFor(volume, pids), .logFile = "/dev/null", .isTalkedTo = true}) {
    const auto answer = program_.readLine(Seconds(20));
    if (answer != "tapped")
        throw std::runtime_error("the tap holder says: " + answer.value_or("nothing"));
}

void TapHolder::route(pid_t pid, const std::string& deviceUID) {
    program_.writeLine(std::to_string(pid) + " " + deviceUID);
    if (program_.readLine(Seconds(10)) != "routed")
        throw std::runtime_error("the tap holder does not route to " + deviceUID);
}

TapHolder::TapReport TapHolder::report(pid_t pid) {
    program_.writeLine(std::to_string(pid));
    std::istringstream words(program_.readLine(Seconds(10)).value_or(""));
    TapReport report;
    if (!(words >> report.callbacks >> report.rms >> report.peak))
        throw std::runtime_error("the tap holder does not report");
    return report;
}

} // namespace orvanta::test
