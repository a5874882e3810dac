// What concerns the session itself.

#include "cli/mix/Answer.h"
#include "cli/mix/Command.h"
#include "cli/mix/CommandError.h"
#include "cli/mix/CommandTable.h"
#include "cli/mix/Values.h"

#include <array>

namespace orvanta::cli {
namespace {

constexpr Range kSeconds{0.0, 86400.0};

Reply levels(Mixer& mixer, Words arguments) {
    if (mixer.model.tappedPIDs.get().empty())
        throw CommandError("Nothing is tapped.");
    Reply reply{.text = {}, .then = Then::showLevels};
    if (!arguments.empty())
        reply.seconds = readNumber(arguments[0], kSeconds);
    return reply;
}

Reply wait(Mixer& /*mixer*/, Words arguments) {
    const double seconds = readNumber(arguments[0], kSeconds);
    return {
        .text = Answer().number("wait", seconds).line(), .then = Then::wait, .seconds = seconds};
}

Reply help(Mixer& /*mixer*/, Words /*arguments*/) {
    return {commandHelp()};
}

Reply quit(Mixer& /*mixer*/, Words /*arguments*/) {
    return {.text = {}, .then = Then::quit};
}

constexpr std::array kSessionCommands{
    Command{"levels", "[SECONDS]", "how loud each tapped application is", 0, 1, levels},
    Command{"wait", "SECONDS", "do nothing for a while", 1, 1, wait},
    Command{"help", "", "this list", 0, 0, help},
    Command{"quit", "", "give everything back and end", 0, 0, quit},
};

} // namespace

std::span<const Command> sessionCommands() {
    return kSessionCommands;
}

} // namespace orvanta::cli
