#include "cli/MixCommand.h"

#include "cli/StopSignals.h"
#include "core/model/DiagnosticLog.h"
#include "platform/linux/LinuxHost.h"

#include <memory>
#include <unistd.h>

namespace orvanta::cli {
namespace {

std::shared_ptr<MixerViewModel> makeModel(const Platform& platform, bool isVerbose) {
    auto model = MixerViewModel::create(platform);
    if (isVerbose)
        model->setDiagnosticSink(diagnosticsTo(platform.systemLog));
    return model;
}

} // namespace

Console standardConsole() {
    return {.isTerminal = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0};
}

int runMixCommand(const Platform& platform, const Options& options, const Console& console,
                  ConsoleLog& log) {
    StopSignals signals;
    MainThreadModel model(platform.mainRunLoop,
                          [&] { return makeModel(platform, options.isVerbose); });
    // The first command finds the taps of the last session. A turn of its own: with this one the
    // devices have come, which the taps may be stored for.
    model([](MixerViewModel& mixer) { mixer.refreshAppsSync(); });
    const auto mixer = model([&](MixerViewModel& mixerModel) {
        return std::make_unique<Mixer>(mixerModel, platform, log, userHomeDirectory());
    });
    const bool isDone = Session(model, *mixer, console, signals).run(options.mixStays);
    return isDone || isatty(console.input) != 0 ? kExitSuccess : kExitFailure;
}

} // namespace orvanta::cli
