#pragma once

#include <string_view>

namespace orvanta {

enum class LogLevel { debug, info, error };

/// One message for the system log. The views are valid during the call only.
struct LogRecord {
    LogLevel level = LogLevel::debug;
    std::string_view subsystem;
    std::string_view category;
    /// May end in a line feed, which belongs to the message.
    std::string_view message;
};

/// Where log messages go. Called from any thread but an IO thread.
class SystemLog {
public:
    SystemLog() = default;
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;
    virtual ~SystemLog() = default;

    virtual void write(const LogRecord& record) = 0;
};

} // namespace orvanta
