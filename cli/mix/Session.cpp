#include "cli/mix/Session.h"

#include "cli/mix/AppAnswer.h"
#include "cli/mix/CommandError.h"
#include "cli/mix/CommandTable.h"
#include "cli/mix/Meters.h"

#include <fmt/format.h>

#include <algorithm>
#include <sys/ioctl.h>
#include <unistd.h>

namespace orvanta::cli {
namespace {

using Clock = std::chrono::steady_clock;
using Duration = std::chrono::duration<double>;

constexpr double kDrawInterval = 0.1;
constexpr double kPrintInterval = 0.5;
constexpr double kUsualLevels = 2.0;

/// A reply, or why there is none.
struct Outcome {
    Reply reply;
    std::string complaint;
};

Outcome outcomeOf(Mixer& mixer, const std::string& line) {
    try {
        return {runLine(mixer, line), {}};
    } catch (const CommandError& error) {
        return {{}, error.what()};
    } catch (const std::exception& failure) {
        return {{}, fmt::format("This did not work: {}.", failure.what())};
    }
}

/// Columns and rows, or those of old where the terminal does not tell.
winsize sizeOf(std::FILE* terminal) {
    winsize size{};
    if (ioctl(fileno(terminal), TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        size = {.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
    return size;
}

} // namespace

Session::Session(MainThreadModel& model, Mixer& mixer, const Console& console, StopSignals& signals)
    : model_(model), mixer_(mixer), console_(console), signals_(signals), lines_(console.input) {}

bool Session::run(bool stays) {
    Flow flow = Flow::goOn;
    while (flow == Flow::goOn)
        flow = readOn();
    if (flow == Flow::inputEnded && stays)
        signals_.wait();
    finishRecordings();
    return !hasFailed_;
}

Session::Flow Session::readOn() {
    if (console_.isTerminal)
        print("> ");
    switch (lines_.wait(signals_)) {
    case LineReader::Arrival::line:
        return doLine();
    case LineReader::Arrival::end:
        if (console_.isTerminal)
            print("\n");
        return Flow::inputEnded;
    default:
        return Flow::over;
    }
}

Session::Flow Session::doLine() {
    const auto line = lines_.take();
    if (!line) {
        complain("The line is too long.");
        return Flow::goOn;
    }
    const Outcome outcome =
        model_([&](MixerViewModel& /*model*/) { return outcomeOf(mixer_, *line); });
    print(outcome.reply.text);
    if (!outcome.complaint.empty())
        complain(outcome.complaint);
    return follow(outcome.reply);
}

Session::Flow Session::follow(const Reply& reply) {
    switch (reply.then) {
    case Then::goOn:
        return Flow::goOn;
    case Then::wait:
        return signals_.waitUntil(Clock::now() + Duration(reply.seconds.value_or(0.0)))
                   ? Flow::over
                   : Flow::goOn;
    case Then::showLevels:
        return showLevels(reply.seconds);
    case Then::quit:
        return Flow::over;
    }
    return Flow::over;
}

Session::Flow Session::showLevels(std::optional<double> seconds) {
    model_([](MixerViewModel& model) { model.setConsoleVisible(true); });
    const Flow flow =
        console_.isTerminal ? drawLevels(seconds) : printLevels(seconds.value_or(kUsualLevels));
    model_([](MixerViewModel& model) { model.setConsoleVisible(false); });
    return flow;
}

/// The line that ends it is a command like any other.
Session::Flow Session::drawLevels(std::optional<double> seconds) {
    MeterPicture picture;
    const auto start = Clock::now();
    for (int drawing = 1;; ++drawing) {
        const double next = drawing * kDrawInterval;
        const auto readings = model_(readMeters);
        const winsize size = sizeOf(console_.output);
        if (!print(picture.drawn(readings, size.ws_col, size.ws_row)))
            return Flow::over;
        switch (lines_.wait(signals_, start + Duration(std::min(next, seconds.value_or(next))))) {
        case LineReader::Arrival::time:
            break;
        case LineReader::Arrival::signal:
            return Flow::over;
        default:
            return Flow::goOn;
        }
        if (seconds && next >= *seconds)
            return Flow::goOn;
    }
}

Session::Flow Session::printLevels(double seconds) {
    const auto start = Clock::now();
    for (int line = 1;; ++line) {
        const double next = std::min(line * kPrintInterval, seconds);
        if (signals_.waitUntil(start + Duration(next)))
            return Flow::over;
        print(meterLines(model_(readMeters)));
        if (next >= seconds)
            return Flow::goOn;
    }
}

void Session::finishRecordings() {
    print(model_([](MixerViewModel& model) {
        std::string lines;
        const PIDSet recording = model.recordingPIDs.get();
        for (const std::int32_t pid : recording)
            if (const auto file = model.stopRecording(pid))
                lines += Answer()
                             .number("pid", pid)
                             .text("name", valueOr(model.tappedAppNames(), pid, std::string()))
                             .text("recorded", file->string())
                             .line();
        return lines;
    }));
}

bool Session::print(const std::string& text) const {
    std::fwrite(text.data(), 1, text.size(), console_.output);
    return std::fflush(console_.output) == 0;
}

void Session::complain(const std::string& sentence) {
    fmt::print(console_.errors, "{}\n", sentence);
    hasFailed_ = true;
}

} // namespace orvanta::cli
