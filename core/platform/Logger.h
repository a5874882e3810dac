#pragma once

#include "core/platform/SystemLog.h"

#include <string>
#include <string_view>

namespace orvanta {

/// Subsystem under which every message of the program is filed.
inline constexpr std::string_view kLogSubsystem = "com.meridane.orvanta";

/// Writes messages of one category to the system log. The format strings are printf's.
class Logger {
public:
    /// `log` must outlive the logger.
    Logger(SystemLog& log, std::string category);

    void debug(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    void info(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    void error(const char* format, ...) const __attribute__((format(printf, 2, 3)));

    /// For a line that was composed as a string: as it is, at debug level.
    void composed(std::string_view line) const;

private:
    SystemLog& log_;
    std::string category_;
};

} // namespace orvanta
