#pragma once

#include "cli/ConsoleLog.h"
#include "cli/mix/Mixer.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedProcessTable.h"
#include "platform/embedded/EmbeddedWorkspace.h"
#include "tests/support/PlatformFakes.h"

#include <memory>
#include <optional>
#include <string>

namespace orvanta::test {

/// A running mixer on an embedded audio server in virtual time, with devices "speakers" (the
/// default) and "headphones" and two playing applications, "Music" (101, "org.music") and "Speech"
/// (102, "org.speech"), to say commands to.
class MixRig : public PlatformFakes {
public:
    MixRig();
    ~MixRig();
    MixRig(const MixRig&) = delete;
    MixRig& operator=(const MixRig&) = delete;

    EmbeddedAudioServer server;
    AudioObjectID speakers;
    AudioObjectID headphones;
    AudioObjectID music;
    AudioObjectID speech;
    std::shared_ptr<MixerViewModel> model;

    /// Ends the model and makes another on the same defaults.
    void restart();

    /// What the line is answered with, or why it is not done.
    std::string say(const std::string& line);

    /// The largest sample of the device's next tenth of a second.
    float peakOn(AudioObjectID device);

private:
    [[nodiscard]] Platform platform();

    EmbeddedWorkspace desktop_{server};
    EmbeddedProcessTable processes_{server};
    cli::ConsoleLog consoleLog_{&log};
    std::optional<cli::Mixer> mixer_;
};

} // namespace orvanta::test
