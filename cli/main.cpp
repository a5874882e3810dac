#include "cli/AudioSystem.h"
#include "cli/ConsoleLog.h"
#include "cli/IntentCommand.h"
#include "cli/ListCommand.h"
#include "cli/MixCommand.h"
#include "cli/Options.h"
#include "cli/StopSignals.h"
#include "cli/TapCommand.h"
#include "platform/linux/LinuxHost.h"
#include "platform/linux/OwnerLock.h"
#include "platform/linux/StandardErrorLog.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "platform/runloop/SystemWallClock.h"

#include <fmt/format.h>

#include <csignal>
#include <cstdlib>
#include <exception>

namespace orvanta::cli {
namespace {

std::filesystem::path settingsFile() {
    return userDefaultsFile(userHomeDirectory(), std::getenv("XDG_CONFIG_HOME"));
}

int refuseSecondOwner(const OwnerLock& lock) {
    const std::string who =
        lock.owner() ? fmt::format("process {}", *lock.owner()) : "another process";
    fmt::print(stderr,
               "AudioMixerCLI: a mixer runs in this session already ({}); it has to end first.\n",
               who);
    return kExitOwned;
}

/// On the user's own settings, which last beyond the session.
int mixOnUserSettings(AudioSystem& system, const Options& options, ConsoleLog& log) {
    SystemWallClock clock;
    SQLiteUserDefaults defaults({.file = settingsFile(), .domain = std::string(kLogSubsystem)},
                                clock, log);
    const int exitCode = runMixCommand(system.platform(defaults), options, standardConsole(), log);
    if (defaults.synchronize())
        return exitCode;
    fmt::print(stderr, "AudioMixerCLI: the last changes of the settings cannot be written to {}.\n",
               settingsFile().string());
    return kExitFailure;
}

/// The commands that take programs' sound. The embedded server and its programs are this process's
/// own, so nobody else can be in the way.
int runAsOwner(AudioSystem& system, const Options& options, ConsoleLog& log) {
    std::optional<OwnerLock> lock;
    if (options.server == Server::pipewire)
        lock.emplace(ownerLockFile(std::getenv("XDG_RUNTIME_DIR"), settingsFile().parent_path()));
    if (lock && !lock->isOurs())
        return refuseSecondOwner(*lock);
    if (options.subcommand == Subcommand::tap)
        return runTapCommand(system.platform(), options.tap, log);
    return lock ? mixOnUserSettings(system, options, log)
                : runMixCommand(system.platform(), options, standardConsole(), log);
}

int run(const Options& options) {
    // A reader that goes away (… | head) must not take the program down before its tap.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor must a recording that meets the user's limit on file sizes: its writes fail instead.
    std::signal(SIGXFSZ, SIG_IGN);
    if (options.subcommand == Subcommand::intent)
        return runIntentCommand(options.intent);
    // Errors are told in a sentence of our own; the log itself is for those who ask for it.
    StandardErrorLog standardError;
    ConsoleLog log(options.isVerbose ? &standardError : nullptr);
    const StopSignals heldBeforeAnyThreadStarts;
    const auto system = openAudioSystem(options.server, log);
    if (!system->isReachable()) {
        fmt::print(stderr, "AudioMixerCLI: no audio server answers; is one running in this "
                           "session? (--server embedded needs none.)\n");
        return kExitNoServer;
    }
    return options.subcommand == Subcommand::list ? runListCommand(system->platform())
                                                  : runAsOwner(*system, options, log);
}

} // namespace
} // namespace orvanta::cli

int main(int argc, char** argv) {
    try {
        const auto parsed = orvanta::cli::parseCommandLine(argc, argv);
        return parsed.options ? orvanta::cli::run(*parsed.options) : parsed.exitCode;
    } catch (const std::exception& failure) {
        fmt::print(stderr, "AudioMixerCLI: {}.\n", failure.what());
        return orvanta::cli::kExitFailure;
    }
}
