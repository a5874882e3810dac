#pragma once

#include "cli/mix/Answer.h"
#include "core/discovery/AudioApp.h"

namespace orvanta::cli {

/// The beginning of every answer about an application.
[[nodiscard]] inline Answer answerAbout(const AudioApp& app) {
    Answer answer;
    answer.number("pid", app.pid).text("name", app.name);
    return answer;
}

} // namespace orvanta::cli
