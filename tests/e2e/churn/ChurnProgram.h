#pragma once

#include "tests/e2e/churn/ExpectedRoute.h"
#include "tests/e2e/support/RealPlayer.h"
#include "tests/e2e/support/StreamClient.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

/// A tapped program of a churn test: one of the real players, or one of our own that reopens its
/// stream at will.
class ChurnProgram {
public:
    /// None for our own.
    using Kind = std::optional<PlayerKind>;

    /// Starts to play at once; `seed` is that of the sound of our own, `file` what a player plays.
    ChurnProgram(Kind kind, std::uint64_t seed, const std::filesystem::path& file,
                 const std::filesystem::path& directory);

    [[nodiscard]] pid_t pid() const;
    /// Its kind and process id.
    [[nodiscard]] std::string name() const;

    [[nodiscard]] Kind kind() const { return kind_; }

    [[nodiscard]] bool isRunning();
    [[nodiscard]] bool canReopen() const;
    void reopen();
    /// It dies without a word.
    void kill();

    /// Whether another program may move its stream now: a program that is moved again and again is
    /// left to the mover, and so is not where its tap wants it.
    [[nodiscard]] bool mayBeMoved(double now) const;

    void noteMove(double now) { moves_.push_back(now); }

    /// Seconds since its start.
    [[nodiscard]] double age() const { return monotonicSeconds() - start_; }

    /// Whether the tap's callback, counted so far, has run since this was asked before.
    [[nodiscard]] bool hasMovedOn(std::uint64_t callbacks);

    /// Volume of its tap.
    float volume = 1;
    ExpectedRoute route;

private:
    Kind kind_;
    std::optional<StreamClient> client_;
    std::optional<RealPlayer> player_;
    std::vector<double> moves_;
    double start_ = monotonicSeconds();
    std::uint64_t callbacks_ = 0;
};

} // namespace orvanta::test
