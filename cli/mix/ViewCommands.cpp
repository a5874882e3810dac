// What there is, and how it is set.

#include "cli/mix/AppAnswer.h"
#include "cli/mix/Command.h"
#include "cli/mix/PresetNames.h"

#include <algorithm>
#include <array>

namespace orvanta::cli {
namespace {

constexpr std::string_view kNoLines = "none\n";

Answer summary(const MixerViewModel& model, const AudioApp& app) {
    return answerAbout(app)
        .text("identifier", app.bundleIdentifier.value_or(""))
        .flag("playing", app.isPlaying)
        .flag("tapped", model.isTapped(app.pid));
}

Reply list(Mixer& mixer, Words /*arguments*/) {
    std::string lines;
    for (const AudioApp& app : mixer.apps())
        lines += summary(mixer.model, app).line();
    return {lines.empty() ? std::string(kNoLines) : lines};
}

Reply devices(Mixer& mixer, Words /*arguments*/) {
    std::string lines;
    for (const OutputDevice& device : mixer.model.outputDeviceManager().availableDevices())
        lines += Answer()
                     .text("uid", device.uid)
                     .text("name", device.name)
                     .flag("default", device.isDefault)
                     .line();
    return {lines.empty() ? std::string(kNoLines) : lines};
}

void addSound(Answer& answer, const MixerViewModel& model, std::int32_t pid) {
    const auto isOn = [pid](const auto& published) {
        return valueOr(published.get(), pid, false);
    };
    answer.number("volume", model.volume(pid))
        .flag("muted", model.isMuted(pid))
        .flag("soloed", model.soloedPIDs.get().contains(pid))
        .number("balance", model.balance(pid))
        .text("eq", eqName(model.eqPreset(pid)))
        .text("compressor", compressorName(model.getCompressor(pid)))
        .state("limiter", isOn(model.limiterEnabled))
        .state("normalize", isOn(model.normalizationEnabled))
        .number("width", valueOr(model.stereoWidths.get(), pid, 1.0F))
        .number("crossfeed", valueOr(model.crossfeedAmounts.get(), pid, 0.0F));
    if (isOn(model.noiseGateEnabled))
        answer.number("gate", valueOr(model.noiseGateThresholds.get(), pid, 0.0F));
    else
        answer.state("gate", false);
}

void addPlaces(Answer& answer, const MixerViewModel& model, std::int32_t pid) {
    if (const auto uid = model.tapManager().getOutputDeviceUID(pid))
        answer.text("device", *uid);
    else
        answer.word("device", "default");
    answer.flag("recording", model.isRecording(pid));
}

Reply status(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.app(arguments[0]);
    Answer answer = summary(mixer.model, app);
    if (mixer.model.isTapped(app.pid)) {
        addSound(answer, mixer.model, app.pid);
        addPlaces(answer, mixer.model, app.pid);
    }
    return {answer.line()};
}

constexpr std::array kViewCommands{
    Command{"list", "", "the applications that make sound, a line each", 0, 0, list},
    Command{"devices", "", "the output devices, a line each", 0, 0, devices},
    Command{"status", "APP", "how an application is set", 1, 1, status},
};

} // namespace

std::span<const Command> viewCommands() {
    return kViewCommands;
}

} // namespace orvanta::cli
