#pragma once

#include "tests/e2e/support/NoiseSignal.h"
#include "tests/support/ChildProcess.h"

#include <filesystem>
#include <string>

namespace orvanta::test {

/// A playing program of our own, which opens, closes and reopens streams in one process and plays
/// the noise signal of its seed, sample after sample, over all of them.
class StreamClient {
public:
    struct Settings {
        std::uint32_t rate = 48000;
        std::uint32_t channels = 2;
        std::uint64_t seed = 1;
        std::string name = "e2e-player";
        /// A copy of the program to run in its stead.
        std::filesystem::path copy = {};
    };

    /// The program's own executable.
    static std::filesystem::path executable();

    /// Starts the program; no stream is open yet.
    explicit StreamClient(const Settings& settings);

    StreamClient() : StreamClient(Settings()) {}

    /// `target` names a device the program itself asks for.
    void open(const std::string& target = "");
    void close();
    /// To the server that runs now, with no stream open.
    void reconnect();
    void pause();
    void resume();

    void kill() { program_.kill(); }

    [[nodiscard]] bool isRunning() { return program_.isRunning(); }

    [[nodiscard]] pid_t pid() const { return program_.pid(); }

    [[nodiscard]] const NoiseSignal& noise() const { return noise_; }

private:
    void tell(const std::string& line);

    ChildProcess program_;
    NoiseSignal noise_;
};

} // namespace orvanta::test
