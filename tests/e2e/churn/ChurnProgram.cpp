#include "tests/e2e/churn/ChurnProgram.h"

#include <algorithm>
#include <utility>

namespace orvanta::test {

namespace {

/// The mixer takes a stream back three times in ten seconds.
constexpr std::ptrdiff_t mostMoves = 2;
constexpr double moveWindow = 11;

} // namespace

ChurnProgram::ChurnProgram(Kind kind, std::uint64_t seed, const std::filesystem::path& file,
                           const std::filesystem::path& directory)
    : kind_(kind) {
    if (kind_) {
        player_.emplace(*kind_, file, directory);
        return;
    }
    client_.emplace(StreamClient::Settings{.seed = seed, .name = "churn-" + std::to_string(seed)});
    client_->open();
}

pid_t ChurnProgram::pid() const {
    return client_ ? client_->pid() : player_->pid();
}

std::string ChurnProgram::name() const {
    return (kind_ ? nameOf(*kind_) : "our own player") + " " + std::to_string(pid());
}

bool ChurnProgram::isRunning() {
    return client_ ? client_->isRunning() : player_->isRunning();
}

bool ChurnProgram::canReopen() const {
    return !kind_ || kind_ == PlayerKind::mpv;
}

void ChurnProgram::reopen() {
    if (client_) {
        client_->close();
        client_->open();
    } else {
        player_->reopen();
    }
}

void ChurnProgram::kill() {
    if (client_)
        client_->kill();
    else
        player_->kill();
}

bool ChurnProgram::hasMovedOn(std::uint64_t callbacks) {
    // A tap that is routed counts from zero again.
    return callbacks != 0 && std::exchange(callbacks_, callbacks) != callbacks;
}

bool ChurnProgram::mayBeMoved(double now) const {
    return std::ranges::count_if(moves_, [&](double move) { return move > now - moveWindow; }) <
           mostMoves;
}

} // namespace orvanta::test
