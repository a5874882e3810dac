#include "cli/AudioSystem.h"
#include "cli/ConsoleLog.h"
#include "cli/ListCommand.h"
#include "cli/Options.h"
#include "cli/StopSignals.h"
#include "cli/TapCommand.h"
#include "platform/linux/StandardErrorLog.h"

#include <fmt/format.h>

#include <csignal>
#include <exception>

namespace orvanta::cli {
namespace {

int run(const Options& options) {
    // A reader that goes away (… | head) must not take the program down before its tap.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor must a recording that meets the user's limit on file sizes: its writes fail instead.
    std::signal(SIGXFSZ, SIG_IGN);
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
    return options.command == Command::list ? runListCommand(system->platform())
                                            : runTapCommand(system->platform(), options.tap, log);
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
