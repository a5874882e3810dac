#include "tests/e2e/support/StreamClient.h"

#include <stdexcept>

namespace orvanta::test {

StreamClient::StreamClient(const Settings& settings)
    : program_({.command = {settings.copy.empty() ? executable() : settings.copy, "--rate",
                            std::to_string(settings.rate), "--channels",
                            std::to_string(settings.channels), "--seed",
                            std::to_string(settings.seed), "--name", settings.name},
                .logFile = "/dev/null",
                .isTalkedTo = true}),
      noise_(settings.seed) {}

std::filesystem::path StreamClient::executable() {
    return ORVANTA_STREAM_CLIENT;
}

void StreamClient::open(const std::string& target) {
    tell(target.empty() ? "open" : "open " + target);
}

void StreamClient::close() {
    tell("close");
}

void StreamClient::reconnect() {
    tell("reconnect");
}

void StreamClient::pause() {
    tell("pause");
}

void StreamClient::resume() {
    tell("resume");
}

void StreamClient::tell(const std::string& line) {
    program_.writeLine(line);
    if (program_.readLine(Seconds(10)) != "ok")
        throw std::runtime_error("the stream client did not obey: " + line);
}

} // namespace orvanta::test
