#include "cli/Options.h"

#include "cli/mix/CommandTable.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <charconv>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvanta::cli {
namespace {

std::vector<VolumePoint> readRide(const std::vector<std::string>& texts) {
    std::vector<VolumePoint> points(texts.size());
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const std::string complaint = readVolumePoint(texts[index], points[index]);
        if (!complaint.empty())
            throw CLI::ValidationError("--ride", complaint);
    }
    return points;
}

/// A number from `lowest` to `highest`. Unlike the library's own check it refuses what is no
/// number.
CLI::Validator between(double lowest, double highest) {
    const auto complaint = [lowest, highest](const std::string& text) -> std::string {
        double value = 0.0;
        if (CLI::detail::lexical_cast(text, value) && value >= lowest && value <= highest)
            return {};
        return fmt::format("'{}' is not a number from {} to {}", text, lowest, highest);
    };
    return {complaint, fmt::format("{} to {}", lowest, highest)};
}

/// An option that takes the name of one of the presets, whatever its case.
template <class Preset, class NamedPresets>
void addPresetOption(CLI::App& command, const std::string& name, std::optional<Preset>& chosen,
                     NamedPresets presets, const std::string& description) {
    std::vector<std::pair<std::string, std::size_t>> places;
    std::vector<std::string_view> names;
    for (const auto& named : presets) {
        places.emplace_back(named.name, places.size());
        names.push_back(named.name);
    }
    command
        .add_option_function<std::size_t>(
            name, [&chosen, presets](std::size_t place) { chosen = presets[place].preset; },
            description)
        ->transform(CLI::CheckedTransformer(places, CLI::ignore_case).description(""))
        ->type_name(fmt::format("{}", fmt::join(names, ", ")));
}

/// Refers the raw values of an enumeration to its values.
template <class Enumeration>
CLI::CheckedTransformer oneOf(std::span<const Enumeration> all) {
    std::vector<std::pair<std::string, Enumeration>> places;
    for (const Enumeration each : all)
        places.emplace_back(rawValue(each), each);
    return CLI::CheckedTransformer(places, CLI::ignore_case);
}

void addRecordOptions(CLI::App& command, RecordOptions& record) {
    CLI::Option* const folder =
        command.add_option("--record", record.folder, "Record into a new file in this folder")
            ->type_name("FOLDER");
    command.add_option("--record-format", record.format, "Kind of file, wav if not said")
        ->transform(oneOf(allRecordingFormats()))
        ->needs(folder)
        ->option_text("wav|m4a");
    command
        .add_option("--record-mode", record.mode,
                    "What the device gets, what the program gives, or a file of each; processed if "
                    "not said")
        ->transform(oneOf(allRecordingModes()))
        ->needs(folder)
        ->option_text("processed|original|both");
}

void addTapCommand(CLI::App& app, TapOptions& tap) {
    CLI::App* const command =
        app.add_subcommand("tap", "Tap a process and play it through the render callback");
    command->add_option("PID", tap.pid, "Process to tap (see list)")
        ->required()
        ->check(CLI::Range(1, 1 << 30));
    command
        ->add_option("--device", tap.deviceUID,
                     "Play on this device (see list) instead of the default one")
        ->type_name("UID");
    command->add_option("--volume", tap.volume, "Linear volume, 0 to 2")->check(between(0.0, 2.0));
    CLI::Option* const ride =
        command
            ->add_option_function<std::vector<std::string>>(
                "--ride", [&tap](const auto& points) { tap.ride = readRide(points); },
                "Reach VOLUME at SECONDS from the start, in a straight line from the point before; "
                "any number of points")
            ->type_name("SECONDS:VOLUME")
            ->allow_extra_args(false);
    command->add_flag("--mute", tap.isMuted, "Mute the process")->excludes(ride);
    command->add_option("--balance", tap.balance, "Balance, -1 (left) to 1 (right)")
        ->check(between(-1.0, 1.0));
    command->add_flag("--limiter", tap.isLimited, "Hold the output near 0 dBFS");
    command->add_option("--gate", tap.gateThreshold, "Gate below this level, in dB")
        ->check(between(-120.0, 0.0));
    addPresetOption(*command, "--eq", tap.eq, EQPreset::allNamedPresets(), "Equaliser preset");
    addPresetOption(*command, "--compressor", tap.compressor, CompressorPreset::allPresets(),
                    "Compressor preset");
    command->add_flag("--normalize", tap.isNormalized, "Even out the loudness");
    command->add_option("--width", tap.stereoWidth, "Stereo width, 0 (mono) to 2.5")
        ->check(between(0.0, 2.5));
    command->add_option("--crossfeed", tap.crossfeed, "Crossfeed for headphones, 0 to 1")
        ->check(between(0.0, 1.0));
    addRecordOptions(*command, tap.record);
    command->add_option("--seconds", tap.seconds, "How long to hold the tap")
        ->capture_default_str()
        ->check(between(0.0, 86400.0));
    command->add_option("--interval", tap.interval, "Seconds between two lines of levels")
        ->capture_default_str()
        ->check(between(0.01, 3600.0));
}

CLI::App* addMixCommand(CLI::App& app, bool& stays) {
    CLI::App* const command = app.add_subcommand(
        "mix", "Run the mixer on the user's settings, with commands from standard input");
    command->add_flag("--stay", stays,
                      "Go on after the end of the input, until SIGINT, SIGTERM or SIGHUP");
    command->footer("Commands, a line each:\n" + commandHelp());
    return command;
}

std::int64_t readWholeNumber(const std::string& text) {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (text.empty() || read.ec != std::errc() || read.ptr != end)
        throw CLI::ValidationError("PERCENT",
                                   fmt::format("'{}' is not a whole number of 64 bits", text));
    return number;
}

CLI::App* addIntent(CLI::App& command, IntentOptions& intent, Intent chosen,
                    const std::string& name, const std::string& description) {
    CLI::App* const added = command.add_subcommand(name, description);
    added->callback([&intent, chosen] { intent.intent = chosen; });
    return added;
}

CLI::App* addIntentCommand(CLI::App& app, IntentOptions& intent) {
    CLI::App* const command =
        app.add_subcommand("intent", "Ask the Orvanta that runs in this session for something, and "
                                     "print what it answers");
    command->require_subcommand(1);
    CLI::App* const setVolume = addIntent(*command, intent, Intent::setVolume, "set-volume",
                                          "Set the volume of everything");
    setVolume
        ->add_option_function<std::string>(
            "PERCENT",
            [&intent](const std::string& text) { intent.volume = readWholeNumber(text); },
            "What lies within 0 to 200 is set; 100 if not said")
        ->type_name("");
    addIntent(*command, intent, Intent::toggleMute, "toggle-mute", "Mute everything, or end that");
    addIntent(*command, intent, Intent::listApps, "list-apps",
              "Name the applications it has tapped");
    addIntent(*command, intent, Intent::shortcuts, "shortcuts",
              "Print what it offers: its intents, and the phrases to ask for them");
    return command;
}

} // namespace

Parsed parseCommandLine(int argc, const char* const* argv) {
    Options options;
    CLI::App app(
        "Looks at the audio processes and devices of this machine, taps one process, mixes "
        "all applications, or asks a running Orvanta for something.");
    app.footer("Exit codes: 0 done, 1 it did not work, 2 wrong usage, 3 no audio server, 4 another "
               "mixer runs.\n");
    app.set_version_flag("--version", ORVANTA_VERSION);
    app.require_subcommand(1);
    const std::map<std::string, Server> servers{{"pipewire", Server::pipewire},
                                                {"embedded", Server::embedded}};
    app.add_option("--server", options.server,
                   "Audio server: pipewire, or embedded with demonstration programs")
        ->transform(CLI::CheckedTransformer(servers, CLI::ignore_case))
        ->option_text("pipewire|embedded");
    app.add_flag("--verbose", options.isVerbose, "Show the log on standard error");
    CLI::App* const list =
        app.add_subcommand("list", "List applications, audio processes and output devices");
    addTapCommand(app, options.tap);
    CLI::App* const mix = addMixCommand(app, options.mixStays);
    CLI::App* const intent = addIntentCommand(app, options.intent);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& complaint) {
        return {std::nullopt, app.exit(complaint) == 0 ? kExitSuccess : kExitUsage};
    }
    if (intent->parsed())
        options.subcommand = Subcommand::intent;
    else if (mix->parsed())
        options.subcommand = Subcommand::mix;
    else
        options.subcommand = list->parsed() ? Subcommand::list : Subcommand::tap;
    return {options, kExitSuccess};
}

} // namespace orvanta::cli
