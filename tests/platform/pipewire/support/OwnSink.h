#pragma once

#include "tests/e2e/support/AudioGraph.h"
#include "tests/platform/pipewire/support/SoundFormat.h"

#include <memory>

namespace orvanta::test {

class LoopedStream;

/// A device that this very process offers, with exactly the properties that a test wants it to
/// have and no others of its own; they can change later, which those of a plugged device cannot.
class OwnSink {
public:
    /// Connects to the server that the environment names; throws std::runtime_error.
    explicit OwnSink(const Properties& properties, SoundFormat format = SoundFormat::raw);
    OwnSink(const OwnSink&) = delete;
    OwnSink& operator=(const OwnSink&) = delete;
    ~OwnSink();

    void update(const Properties& properties);

private:
    std::unique_ptr<LoopedStream> stream_;
};

} // namespace orvanta::test
