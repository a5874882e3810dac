#pragma once

#include "core/model/MixerViewModel.h"
#include "core/platform/Logger.h"

namespace orvanta {

/// Puts a model's diagnostic lines into the system's log, for who wants to read along. `log` must
/// outlive what uses the sink.
inline MixerViewModel::DiagnosticSink diagnosticsTo(SystemLog& log) {
    return [&log](std::string_view line) {
        log.write({LogLevel::debug, kLogSubsystem, "diagnostics", line});
    };
}

} // namespace orvanta
