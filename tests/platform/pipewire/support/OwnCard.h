#pragma once

#include "tests/e2e/support/AudioGraph.h"

#include <memory>

namespace orvanta::test {

/// A sound card that this very process offers: it has properties and nothing that could play.
class OwnCard {
public:
    /// Connects to the server that the environment names and returns when the server knows the
    /// card; throws std::runtime_error.
    explicit OwnCard(const Properties& properties);
    OwnCard(const OwnCard&) = delete;
    OwnCard& operator=(const OwnCard&) = delete;
    ~OwnCard();

    /// The server's number for it.
    [[nodiscard]] std::uint32_t id() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace orvanta::test
