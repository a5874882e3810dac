// What concerns everything at once.

#include "cli/mix/Answer.h"
#include "cli/mix/Command.h"
#include "cli/mix/Values.h"

#include <array>

namespace orvanta::cli {
namespace {

Reply master(Mixer& mixer, Words arguments) {
    mixer.model.setMasterVolume(readLevel(arguments[0], {0.0, 1.0}));
    return {Answer().number("master", mixer.model.masterVolume.get()).line()};
}

Reply muteAll(Mixer& mixer, Words arguments) {
    if (readSwitch(arguments[0]) != mixer.model.isMasterMuted.get())
        mixer.model.toggleMuteAll();
    return {Answer().state("muteall", mixer.model.isMasterMuted.get()).line()};
}

/// What plays already is tapped at once, not only when the model looks around next.
Reply autoTap(Mixer& mixer, Words arguments) {
    mixer.model.autoTapEnabled.set(readSwitch(arguments[0]));
    if (mixer.model.autoTapEnabled.get())
        mixer.model.refreshAppsSync();
    return {Answer().state("autotap", mixer.model.autoTapEnabled.get()).line()};
}

constexpr std::array kMasterCommands{
    Command{"master", "0..1", "the volume of the devices themselves", 1, 1, master},
    Command{"muteall", "on|off", "silence everything", 1, 1, muteAll},
    Command{"autotap", "on|off", "tap whatever plays", 1, 1, autoTap},
};

} // namespace

std::span<const Command> masterCommands() {
    return kMasterCommands;
}

} // namespace orvanta::cli
