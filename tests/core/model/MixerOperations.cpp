#include "tests/core/model/MixerOperations.h"

#include <fmt/format.h>

#include <utility>

namespace orvanta::test {
namespace {

using rc::Gen;

Gen<std::int32_t> anyPID() {
    return rc::gen::elementOf(
        std::vector<std::int32_t>(MixerWorld::kPIDs.begin(), MixerWorld::kPIDs.end()));
}

Gen<bool> anyBool() {
    return rc::gen::arbitrary<bool>();
}

/// For a slider: what is neutral, audible and just between, and what no slider gives. Never NaN,
/// which equals nothing.
Gen<float> anyValue() {
    return rc::gen::element(0.0F, 1.0F, 0.5F, 1.5F, 2.0F, 0.01F, 0.0101F, 0.005F, 0.0051F, 0.99F,
                            0.989F, 1.01F, 1.0101F, 0.0499F, 0.05F, -0.05F, -0.0101F, -1.0F, 6.0F,
                            -12.0F, -40.0F, 1e-42F, 3.4e38F, -3.4e38F);
}

std::string deviceName(const std::optional<std::string>& uid) {
    return uid.value_or("the default");
}

Gen<std::optional<std::string>> anyRoute() {
    return rc::gen::element<std::optional<std::string>>(std::nullopt, "speakers", "headphones",
                                                        "usb", "nowhere");
}

Gen<std::string> anyPluggable() {
    return rc::gen::element<std::string>("headphones", "usb");
}

struct NamedCompressor {
    const char* name = nullptr;
    CompressorPreset preset;
};

const std::array<NamedCompressor, 5>& compressors() {
    static const std::array<NamedCompressor, 5> all{
        {{"off", CompressorPreset::off},
         {"music", CompressorPreset::music},
         {"vocal", CompressorPreset::vocal},
         {"nearly off", {{{.ratio = 1.0499F}, {.ratio = 1.0F}, {.ratio = 0.5F}}}},
         {"without bands", {}}}};
    return all;
}

/// `does(world, arguments...)` with a text of it and any of these arguments.
template <class Text, class Does, class... Arguments>
Gen<Operation> operation(Text text, Does does, Gen<Arguments>... arguments) {
    return rc::gen::apply(
        [text, does](const Arguments&... chosen) {
            return Operation{text(chosen...), [does, chosen...](MixerWorld& world) {
                                 does(world, chosen...);
                             }};
        },
        std::move(arguments)...);
}

/// An operation whose text is its name and its arguments.
template <class Does, class... Arguments>
Gen<Operation> named(const char* name, Does does, Gen<Arguments>... arguments) {
    return operation(
        [name](const Arguments&... chosen) {
            std::string line = name;
            ((line += fmt::format(" {}", chosen)), ...);
            return line;
        },
        does, std::move(arguments)...);
}

/// `give(mixer, arguments...)` to model and reference, in a text as above.
template <class Give, class... Arguments>
Gen<Operation> command(const char* name, Give give, Gen<Arguments>... arguments) {
    return named(
        name,
        [give](MixerWorld& world, const Arguments&... chosen) {
            world.command([&](auto& mixer) { give(mixer, chosen...); });
        },
        std::move(arguments)...);
}

Gen<Operation> anyCommand() {
    return rc::gen::weightedOneOf<Operation>(
        {{5, named(
                 "toggleTap",
                 [](MixerWorld& world, std::int32_t pid) {
                     const AudioApp app = world.application(pid);
                     world.command([&](auto& mixer) { mixer.toggleTap(app); });
                 },
                 anyPID())},
         {3, command(
                 "setVolume", [](auto& mixer, auto... with) { mixer.setVolume(with...); }, anyPID(),
                 anyValue())},
         {3, command(
                 "toggleMute", [](auto& mixer, auto... with) { mixer.toggleMute(with...); },
                 anyPID())},
         {4, command(
                 "toggleSolo", [](auto& mixer, auto... with) { mixer.toggleSolo(with...); },
                 anyPID())},
         {2, command(
                 "setEQ", [](auto& mixer, auto... with) { mixer.setEQ(with...); }, anyPID(),
                 rc::gen::inRange(-1, 12), anyValue())},
         {1, command(
                 "resetEQ", [](auto& mixer, auto... with) { mixer.resetEQ(with...); }, anyPID())},
         {1, command(
                 "setLimiterEnabled",
                 [](auto& mixer, auto... with) { mixer.setLimiterEnabled(with...); }, anyPID(),
                 anyBool())},
         {1, command(
                 "setNormalizationEnabled",
                 [](auto& mixer, auto... with) { mixer.setNormalizationEnabled(with...); },
                 anyPID(), anyBool())},
         {1, command(
                 "setStereoWidth", [](auto& mixer, auto... with) { mixer.setStereoWidth(with...); },
                 anyPID(), anyValue())},
         {1, command(
                 "setCrossfeed", [](auto& mixer, auto... with) { mixer.setCrossfeed(with...); },
                 anyPID(), anyValue())},
         {1, command(
                 "setBalance", [](auto& mixer, auto... with) { mixer.setBalance(with...); },
                 anyPID(), anyValue())},
         {1, command(
                 "setNoiseGate", [](auto& mixer, auto... with) { mixer.setNoiseGate(with...); },
                 anyPID(), anyBool(), anyValue())},
         {2, operation(
                 [](std::int32_t pid, std::size_t preset) {
                     return fmt::format("setCompressor {} {}", pid, compressors().at(preset).name);
                 },
                 [](MixerWorld& world, std::int32_t pid, std::size_t preset) {
                     world.command([&](auto& mixer) {
                         mixer.setCompressor(pid, compressors().at(preset).preset);
                     });
                 },
                 anyPID(), rc::gen::inRange<std::size_t>(0, compressors().size()))},
         {4, operation(
                 [](std::int32_t pid, const std::optional<std::string>& uid) {
                     return fmt::format("routeApp {} to {}", pid, deviceName(uid));
                 },
                 [](MixerWorld& world, std::int32_t pid, const std::optional<std::string>& uid) {
                     world.command([&](auto& mixer) { mixer.routeApp(pid, uid); });
                 },
                 anyPID(), anyRoute())}});
}

Gen<Operation> anyGlobalCommand() {
    return rc::gen::oneOf(
        command("toggleMuteAll", [](auto& mixer) { mixer.toggleMuteAll(); }),
        command(
            "setMasterVolume", [](auto& mixer, auto... with) { mixer.setMasterVolume(with...); },
            anyValue()),
        command(
            "setMasterVolumeUI",
            [](auto& mixer, auto... with) { mixer.setMasterVolumeUI(with...); }, anyValue()),
        command(
            "applyMasterVolumeToDevices",
            [](auto& mixer, auto... with) { mixer.applyMasterVolumeToDevices(with...); },
            anyValue()),
        command(
            "setPopoverVisible",
            [](auto& mixer, auto... with) { mixer.setPopoverVisible(with...); }, anyBool()),
        command(
            "setConsoleVisible",
            [](auto& mixer, auto... with) { mixer.setConsoleVisible(with...); }, anyBool()),
        named(
            "autoTapEnabled",
            [](MixerWorld& world, bool isEnabled) {
                world.model->autoTapEnabled.set(isEnabled);
                world.reference.setAutoTapEnabled(isEnabled);
            },
            anyBool()));
}

Gen<std::size_t> anyPlace() {
    return rc::gen::inRange<std::size_t>(0, 5);
}

Gen<Operation> anyProfileCommand() {
    return rc::gen::oneOf(
        named("saveCurrentAsProfile", [](MixerWorld& world) { world.saveProfile("Evening"); }),
        named(
            "applyProfile",
            [](MixerWorld& world, std::size_t place) {
                const AudioProfile profile = world.profile(place);
                world.command([&](auto& mixer) { mixer.applyProfile(profile); });
            },
            anyPlace()),
        named(
            "updateProfile",
            [](MixerWorld& world, std::size_t place) {
                const UUID id = world.profile(place).id;
                world.command([&](auto& mixer) { mixer.updateProfile(id); });
            },
            anyPlace()),
        named(
            "renameProfile",
            [](MixerWorld& world, std::size_t place) {
                const UUID id = world.profile(place).id;
                world.command([&](auto& mixer) { mixer.renameProfile(id, "Morning"); });
            },
            anyPlace()),
        named(
            "deleteProfile",
            [](MixerWorld& world, std::size_t place) {
                const UUID id = world.profile(place).id;
                world.command([&](auto& mixer) { mixer.deleteProfile(id); });
            },
            anyPlace()));
}

Gen<Operation> anyRecordingCommand() {
    return rc::gen::weightedOneOf<Operation>(
        {{4, command(
                 "toggleRecording",
                 [](auto& mixer, auto... with) { mixer.toggleRecording(with...); }, anyPID())},
         {1, command(
                 "startRecording", [](auto& mixer, auto... with) { mixer.startRecording(with...); },
                 anyPID())},
         {3, command(
                 "stopRecording", [](auto& mixer, auto... with) { mixer.stopRecording(with...); },
                 anyPID())},
         {1,
          command("checkRecordingDurations", [](auto& mixer) { mixer.checkRecordingDurations(); })},
         {1, named(
                 "the recording has seconds:",
                 [](MixerWorld& world, std::int32_t pid, double seconds) {
                     world.tapping->recordingDurations[pid] = seconds;
                 },
                 anyPID(), rc::gen::element(0.0, 59.0, 60.0, 7199.0, 7200.0))},
         {1, named(
                 "maxRecordingDuration",
                 [](MixerWorld& world, double seconds) {
                     world.model->maxRecordingDuration.set(seconds);
                     world.reference.setMaxRecordingDuration(seconds);
                 },
                 rc::gen::element(0.0, 60.0, 7200.0, -1.0))},
         {1, operation(
                 [](RecordingMode mode) { return fmt::format("recordingMode {}", rawValue(mode)); },
                 [](MixerWorld& world, RecordingMode mode) {
                     world.model->recordingMode.set(mode);
                     world.reference.setRecordingMode(mode);
                 },
                 rc::gen::element(RecordingMode::processed, RecordingMode::original,
                                  RecordingMode::both))},
         {1, operation(
                 [](RecordingFormat format) {
                     return fmt::format("recordingFormat {}", rawValue(format));
                 },
                 [](MixerWorld& world, RecordingFormat format) {
                     world.model->recordingFormat.set(format);
                     world.reference.setRecordingFormat(format);
                 },
                 rc::gen::element(RecordingFormat::wav, RecordingFormat::m4a))}});
}

Gen<Operation> anyComingAndGoing() {
    return rc::gen::weightedOneOf<Operation>(
        {{4,
          named(
              "app starts:",
              [](MixerWorld& world, std::int32_t pid, std::size_t program, bool isPlaying) {
                  world.appStarts(pid, program, isPlaying);
              },
              anyPID(), rc::gen::inRange<std::size_t>(0, MixerWorld::kPrograms.size()), anyBool())},
         {2, named(
                 "app quits:", [](MixerWorld& world, std::int32_t pid) { world.unlist(pid); },
                 anyPID())},
         {3, named(
                 "app moves to another process:",
                 [](MixerWorld& world, std::int32_t from, std::int32_t to) {
                     world.appMoves(from, to);
                 },
                 anyPID(), anyPID())},
         {2, named(
                 "app plays:",
                 [](MixerWorld& world, std::int32_t pid, bool isPlaying) {
                     world.appPlays(pid, isPlaying);
                 },
                 anyPID(), anyBool())},
         {1, named(
                 "app is renamed:",
                 [](MixerWorld& world, std::int32_t pid) { world.appIsRenamed(pid, "Music"); },
                 anyPID())},
         {1,
          named(
              "device comes:", [](MixerWorld& world, const std::string& uid) { world.plug(uid); },
              anyPluggable())},
         {1,
          named(
              "device goes:", [](MixerWorld& world, const std::string& uid) { world.unplug(uid); },
              anyPluggable())}});
}

Gen<Operation> anyRefusal() {
    return rc::gen::weightedOneOf<Operation>(
        {{1,
          named(
              "taps are refused:",
              [](MixerWorld& world, std::int32_t pid) { world.tapping->refusedTaps.insert(pid); },
              anyPID())},
         {2,
          named("taps are granted", [](MixerWorld& world) { world.tapping->refusedTaps.clear(); })},
         {1, named(
                 "a device refuses:",
                 [](MixerWorld& world, const std::string& uid) {
                     world.tapping->refusedDevices.insert(uid);
                 },
                 rc::gen::element<std::string>("headphones", "usb", "speakers", ""))},
         {1, named("devices are willing",
                   [](MixerWorld& world) { world.tapping->refusedDevices.clear(); })}});
}

Gen<Operation> anySound() {
    return rc::gen::oneOf(
        named(
            "callbacks stay at:",
            [](MixerWorld& world, std::int32_t pid, std::uint64_t count) {
                world.tapping->callbackCounts[pid] = count;
            },
            anyPID(), rc::gen::element<std::uint64_t>(0, 0, 1, 100, 101)),
        named(
            "callbacks run:",
            [](MixerWorld& world, std::int32_t pid) { world.tapping->callbackCounts.erase(pid); },
            anyPID()),
        named(
            "level:",
            [](MixerWorld& world, std::int32_t pid, float rms, float peak) {
                world.tapping->levels[pid] = {.rms = rms, .peak = peak};
            },
            anyPID(), anyValue(), anyValue()),
        named(
            "silence:",
            [](MixerWorld& world, std::int32_t pid) { world.tapping->levels[pid] = {}; }, anyPID()),
        named(
            "no level:",
            [](MixerWorld& world, std::int32_t pid) { world.tapping->levels.erase(pid); },
            anyPID()),
        named(
            "input peak:",
            [](MixerWorld& world, std::int32_t pid, float peak) {
                world.tapping->diagnostics[pid] = {.inPeak = peak};
            },
            anyPID(), rc::gen::element(0.0F, 0.0F, 1e-42F, 0.5F)),
        named(
            "gain reduction:",
            [](MixerWorld& world, std::int32_t pid, float reduction) {
                world.tapping->gainReductions[pid] = {reduction, 0.0F, 0.0F};
            },
            anyPID(), anyValue()),
        named(
            "process is there to read:",
            [](MixerWorld& world, std::int32_t pid) { world.processTable.tasks[pid] = {}; },
            anyPID()));
}

Gen<Operation> anyTime() {
    const auto seconds = [](Gen<double> time) {
        return named(
            "seconds pass:",
            [](MixerWorld& world, double span) { world.timePasses(Seconds(span)); },
            std::move(time));
    };
    return rc::gen::weightedOneOf<Operation>(
        {{20, command("refreshAppsSync", [](auto& mixer) { mixer.refreshAppsSync(); })},
         {5, named("refreshApps",
                   [](MixerWorld& world) {
                       world.model->refreshApps();
                       world.runLoop.runUntilIdle();
                       world.reference.refreshAppsSync();
                   })},
         {15, seconds(rc::gen::element(0.02, 0.13, 0.5, 1.0, 2.0, 8.0))},
         {2, seconds(rc::gen::element(21.0, 40.0))},
         {1, seconds(rc::gen::element(130.0, 330.0))},
         {1, named(
                 "plays, then is silent, watched, for seconds:",
                 [](MixerWorld& world, std::int32_t pid, double silence) {
                     world.fallsSilent(pid, Seconds(silence));
                 },
                 anyPID(), rc::gen::element(130.0, 311.0, 321.0, 460.0))}});
}

Gen<Operation> anyOperation() {
    return rc::gen::weightedOneOf<Operation>(
        {{80, anyCommand()},
         {40, anyComingAndGoing()},
         {50, anyTime()},
         {15, anyGlobalCommand()},
         {15, anySound()},
         {20, anyRecordingCommand()},
         {5, anyProfileCommand()},
         {5, anyRefusal()},
         {1, named("the program is restarted", [](MixerWorld& world) { world.restart(); })}});
}

} // namespace

void showValue(const Operations& operations, std::ostream& stream) {
    for (const Operation& operation : operations.list)
        stream << "\n  " << operation.text;
}

Gen<Operations> anyOperations(int longest) {
    return rc::gen::map(
        rc::gen::scale(longest / 100.0, rc::gen::container<std::vector<Operation>>(anyOperation())),
        [](std::vector<Operation> list) { return Operations{std::move(list)}; });
}

} // namespace orvanta::test
