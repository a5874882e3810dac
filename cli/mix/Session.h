#pragma once

#include "cli/MainThread.h"
#include "cli/StopSignals.h"
#include "cli/mix/Command.h"
#include "cli/mix/LineReader.h"

#include <cstdio>
#include <string>

namespace orvanta::cli {

/// Where a session's commands come from and its answers go.
struct Console {
    int input = 0;
    std::FILE* output = stdout;
    std::FILE* errors = stderr;
    /// Somebody sits there: a prompt, and meters that are drawn over themselves.
    bool isTerminal = false;
};

/// Takes commands line by line, has them done on the main thread, and answers.
class Session {
public:
    /// What is referred to outlives it.
    Session(MainThreadModel& model, Mixer& mixer, const Console& console, StopSignals& signals);

    /// Until quit, a signal, or the end of the input; with `stays` the latter only ends what is
    /// read. Then what is still being recorded is finished. True where every command was done.
    bool run(bool stays);

private:
    /// How the session goes on.
    enum class Flow { goOn, inputEnded, over };

    Flow readOn();
    Flow doLine();
    Flow follow(const Reply& reply);
    Flow showLevels(std::optional<double> seconds);
    Flow drawLevels(std::optional<double> seconds);
    Flow printLevels(double seconds);
    void finishRecordings();

    /// False when nobody reads it any more.
    bool print(const std::string& text) const;
    void complain(const std::string& sentence);

    MainThreadModel& model_;
    Mixer& mixer_;
    const Console console_;
    StopSignals& signals_;
    LineReader lines_;
    bool hasFailed_ = false;
};

} // namespace orvanta::cli
