// Whose sound the mixer has, and where it plays.

#include "cli/StatusWords.h"
#include "cli/mix/AppAnswer.h"
#include "cli/mix/Command.h"
#include "cli/mix/CommandError.h"
#include "cli/mix/Values.h"

#include <algorithm>
#include <array>

namespace orvanta::cli {
namespace {

/// The reason why something was refused, as the engine has logged it.
std::string lastReason(const Mixer& mixer) {
    return withStatusInWords(mixer.log.lastError());
}

Reply tapped(const Mixer& mixer, const AudioApp& app) {
    return {answerAbout(app).flag("tapped", mixer.model.isTapped(app.pid)).line()};
}

Reply tap(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.app(arguments[0]);
    if (mixer.model.isTapped(app.pid))
        throw CommandError(fmt::format("{} is tapped already.", described(app)));
    mixer.log.forgetLastError();
    mixer.model.toggleTap(app);
    if (!mixer.model.isTapped(app.pid))
        throw CommandError(
            fmt::format("{} cannot be tapped: {}.", described(app), lastReason(mixer)));
    return tapped(mixer, app);
}

/// A recording is complete when it ends before its tap, and a gate lasts no longer than that.
Reply untap(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    std::string recorded;
    if (mixer.model.isRecording(app.pid))
        if (const auto file = mixer.model.stopRecording(app.pid))
            recorded = answerAbout(app).text("recorded", file->string()).line();
    mixer.model.setNoiseGate(app.pid, false,
                             valueOr(mixer.model.noiseGateThresholds.get(), app.pid, 0.0F));
    mixer.model.toggleTap(app);
    return {recorded + tapped(mixer, app).text};
}

std::vector<std::string> deviceUIDs(const MixerViewModel& model) {
    std::vector<std::string> uids;
    for (const OutputDevice& device : model.outputDeviceManager().availableDevices())
        uids.push_back(device.uid);
    return uids;
}

/// A device that is not there is refused here already: the engine would try it, and take the sound
/// from where it is playing now.
std::optional<std::string> readDevice(const MixerViewModel& model, const std::string& word) {
    if (isSameWord(word, "default"))
        return std::nullopt;
    std::vector<std::string> uids = deviceUIDs(model);
    if (std::ranges::find(uids, word) != uids.end())
        return word;
    std::ranges::transform(uids, uids.begin(),
                           [](const std::string& uid) { return inQuotes(uid); });
    throw CommandError(fmt::format("There is no such device {}; devices are {}.", inQuotes(word),
                                   uids.empty() ? "missing altogether" : enumerated(uids)));
}

Reply route(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const auto uid = readDevice(mixer.model, arguments[1]);
    mixer.log.forgetLastError();
    mixer.model.routeApp(app.pid, uid);
    // Nothing but the log tells: the device may be the one that was chosen before.
    if (!mixer.log.lastError().empty())
        throw CommandError(fmt::format("{} cannot play on the device {}: {}.", described(app),
                                       inQuotes(arguments[1]), lastReason(mixer)));
    Answer answer = answerAbout(app);
    return {(uid ? answer.text("device", *uid) : answer.word("device", "default")).line()};
}

constexpr std::array kTapCommands{
    Command{"tap", "APP", "take its sound, with what is stored for it", 1, 1, tap},
    Command{"untap", "APP", "give its sound back", 1, 1, untap},
    Command{"route", "APP UID|default", "play it on a device of its own", 2, 2, route},
};

} // namespace

std::span<const Command> tapCommands() {
    return kTapCommands;
}

} // namespace orvanta::cli
