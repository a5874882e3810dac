// How a tapped application sounds.

#include "cli/mix/AppAnswer.h"
#include "cli/mix/Command.h"
#include "cli/mix/CommandError.h"
#include "cli/mix/PresetNames.h"
#include "cli/mix/Values.h"
#include "core/dsp/EQProcessor.h"

#include <array>

namespace orvanta::cli {
namespace {

/// Sets the mute, also where the model and the tap have it differently.
void setMuted(MixerViewModel& model, std::int32_t pid, bool isMuted) {
    if (model.isMuted(pid) == isMuted && model.tapManager().isMuted(pid) != isMuted)
        model.toggleMute(pid);
    if (model.isMuted(pid) != isMuted)
        model.toggleMute(pid);
}

Reply volume(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const float level = readLevel(arguments[1], {0.0, 2.0});
    mixer.model.setVolume(app.pid, level);
    // The tap is heard again with its new volume, and the model is to say so.
    setMuted(mixer.model, app.pid, mixer.model.tapManager().isMuted(app.pid));
    return {answerAbout(app)
                .number("volume", mixer.model.volume(app.pid))
                .flag("muted", mixer.model.isMuted(app.pid))
                .line()};
}

Reply replyMuted(Mixer& mixer, const std::string& word, bool isMuted) {
    const AudioApp app = mixer.tappedApp(word);
    setMuted(mixer.model, app.pid, isMuted);
    return {answerAbout(app).flag("muted", mixer.model.isMuted(app.pid)).line()};
}

Reply mute(Mixer& mixer, Words arguments) {
    return replyMuted(mixer, arguments[0], true);
}

Reply unmute(Mixer& mixer, Words arguments) {
    return replyMuted(mixer, arguments[0], false);
}

Reply replySoloed(Mixer& mixer, const AudioApp& app, bool isSoloed) {
    if (mixer.model.soloedPIDs.get().contains(app.pid) != isSoloed)
        mixer.model.toggleSolo(app.pid);
    return {answerAbout(app).flag("soloed", mixer.model.soloedPIDs.get().contains(app.pid)).line()};
}

Reply solo(Mixer& mixer, Words arguments) {
    return replySoloed(mixer, mixer.tappedApp(arguments[0]), true);
}

/// Also of what was given back meanwhile: the others are muted as long as it is soloed.
Reply unsolo(Mixer& mixer, Words arguments) {
    return replySoloed(mixer, mixer.app(arguments[0]), false);
}

Reply balance(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    mixer.model.setBalance(app.pid, static_cast<float>(readNumber(arguments[1], {-1.0, 1.0})));
    return {answerAbout(app).number("balance", mixer.model.balance(app.pid)).line()};
}

/// By what its control is called, or by its frequency in Hz.
int readBand(const std::string& word) {
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        if (isSameWord(word, kEQLabels[band]) || word == fmt::format("{}", kEQFrequencies[band]))
            return static_cast<int>(band);
    throw CommandError(fmt::format("There is no band {}; there are {}.", inQuotes(word),
                                   fmt::join(kEQLabels, ", ")));
}

const EQPreset& readEQPreset(const std::string& word) {
    static const NamedEQPreset flat{"flat", "", EQPreset()};
    if (isSameWord(word, flat.name))
        return flat.preset;
    return readNamed(
               word, EQPreset::allNamedPresets(), [](const auto& each) { return each.name; },
               "equaliser preset")
        .preset;
}

Reply eq(Mixer& mixer, Words arguments) {
    constexpr auto kLargest = static_cast<double>(EQProcessor::kLargestGain);
    const AudioApp app = mixer.tappedApp(arguments[0]);
    MixerViewModel& model = mixer.model;
    if (arguments.size() == 3) {
        const int band = readBand(arguments[1]);
        model.setEQ(app.pid, band,
                    static_cast<float>(readNumber(arguments[2], {-kLargest, kLargest})));
    } else if (const EQPreset& preset = readEQPreset(arguments[1]); preset.isFlat()) {
        model.resetEQ(app.pid);
    } else {
        for (std::size_t band = 0; band < kEQBandCount; ++band)
            model.setEQ(app.pid, static_cast<int>(band), preset.gains[band]);
    }
    return {answerAbout(app).text("eq", eqName(model.eqPreset(app.pid))).line()};
}

Reply compressor(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const auto& named = readNamed(
        arguments[1], CompressorPreset::allPresets(), [](const auto& each) { return each.name; },
        "compressor preset");
    mixer.model.setCompressor(app.pid, named.preset);
    return {answerAbout(app)
                .text("compressor", compressorName(mixer.model.getCompressor(app.pid)))
                .line()};
}

Reply limiter(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const bool isOn = readSwitch(arguments[1]);
    mixer.model.setLimiterEnabled(app.pid, isOn);
    return {answerAbout(app).state("limiter", isOn).line()};
}

Reply normalize(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const bool isOn = readSwitch(arguments[1]);
    mixer.model.setNormalizationEnabled(app.pid, isOn);
    return {answerAbout(app).state("normalize", isOn).line()};
}

Reply width(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const auto amount = static_cast<float>(readNumber(arguments[1], {0.0, 2.5}));
    mixer.model.setStereoWidth(app.pid, amount);
    return {answerAbout(app).number("width", amount).line()};
}

Reply crossfeed(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const auto amount = static_cast<float>(readNumber(arguments[1], {0.0, 1.0}));
    mixer.model.setCrossfeed(app.pid, amount);
    return {answerAbout(app).number("crossfeed", amount).line()};
}

Reply gate(Mixer& mixer, Words arguments) {
    constexpr float kUsualThreshold = -60.0F;
    const AudioApp app = mixer.tappedApp(arguments[0]);
    const bool isOn = readSwitch(arguments[1]);
    if (!isOn && arguments.size() > 2)
        throw CommandError("A gate that is off takes no threshold.");
    float threshold = valueOr(mixer.model.noiseGateThresholds.get(), app.pid, kUsualThreshold);
    if (arguments.size() > 2)
        threshold = static_cast<float>(readNumber(arguments[2], {-120.0, 0.0}));
    mixer.model.setNoiseGate(app.pid, isOn, threshold);
    Answer answer = answerAbout(app);
    return {(isOn ? answer.number("gate", threshold) : answer.state("gate", false)).line()};
}

constexpr std::array kSoundCommands{
    Command{"volume", "APP 0..2", "its volume; also as a percentage, 150%", 2, 2, volume},
    Command{"mute", "APP", "silence it", 1, 1, mute},
    Command{"unmute", "APP", "let it be heard again", 1, 1, unmute},
    Command{"solo", "APP", "mute all that are not soloed", 1, 1, solo},
    Command{"unsolo", "APP", "end that", 1, 1, unsolo},
    Command{"balance", "APP -1..1", "from left to right", 2, 2, balance},
    Command{"eq", "APP PRESET|flat|BAND GAIN", "a preset, or one band by so many dB", 2, 3, eq},
    Command{"compressor", "APP PRESET|off", "even out its dynamics", 2, 2, compressor},
    Command{"limiter", "APP on|off", "hold it near 0 dBFS", 2, 2, limiter},
    Command{"normalize", "APP on|off", "even out its loudness", 2, 2, normalize},
    Command{"width", "APP 0..2.5", "stereo width, from mono on; 1 is its own", 2, 2, width},
    Command{"crossfeed", "APP 0..1", "a share for the other ear, for headphones", 2, 2, crossfeed},
    Command{"gate", "APP on [DB]|off", "silence it below a level; lasts as long as the tap", 2, 3,
            gate},
};

} // namespace

std::span<const Command> soundCommands() {
    return kSoundCommands;
}

} // namespace orvanta::cli
