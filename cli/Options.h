#pragma once

#include "cli/VolumeRide.h"
#include "core/dsp/CompressorPreset.h"
#include "core/dsp/EQPreset.h"
#include "core/recording/RecordingFormat.h"
#include "core/recording/RecordingMode.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::cli {

enum class Server { pipewire, embedded };
enum class Subcommand { list, tap, mix, intent };
/// What a running Orvanta can be asked for.
enum class Intent { setVolume, toggleMute, listApps, shortcuts };

/// What the `tap` command records.
struct RecordOptions {
    /// No recording where there is none.
    std::optional<std::filesystem::path> folder;
    RecordingFormat format = RecordingFormat::wav;
    RecordingMode mode = RecordingMode::processed;
};

/// Settings of the `tap` command; what is absent stays as a new tap has it.
struct TapOptions {
    std::int32_t pid = 0;
    /// None: the default output, wherever it moves.
    std::optional<std::string> deviceUID;
    std::optional<float> volume;
    /// Moves the volume while the tap lasts; empty for a volume that stays.
    std::vector<VolumePoint> ride;
    bool isMuted = false;
    std::optional<float> balance;
    bool isLimited = false;
    std::optional<float> gateThreshold;
    std::optional<EQPreset> eq;
    std::optional<CompressorPreset> compressor;
    bool isNormalized = false;
    std::optional<float> stereoWidth;
    std::optional<float> crossfeed;
    RecordOptions record;
    /// How long to hold the tap.
    double seconds = 10.0;
    /// Time between two lines of levels, seconds.
    double interval = 0.5;
};

/// What the `intent` command asks for.
struct IntentOptions {
    Intent intent = Intent::shortcuts;
    /// Percent, any number; none: the intent's own.
    std::optional<std::int64_t> volume;
};

struct Options {
    Server server = Server::pipewire;
    bool isVerbose = false;
    Subcommand subcommand = Subcommand::list;
    TapOptions tap;
    /// Whether a session of the mixer goes on after the end of its input.
    bool mixStays = false;
    IntentOptions intent;
};

/// Exit codes of the program.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitNoServer = 3;
inline constexpr int kExitOwned = 4;

/// What the command line asks for: options to run with, or the code to exit with at once, after
/// help or a complaint has been printed.
struct Parsed {
    std::optional<Options> options;
    int exitCode = kExitSuccess;
};

Parsed parseCommandLine(int argc, const char* const* argv);

} // namespace orvanta::cli
