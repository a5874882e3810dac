#pragma once

#include "core/platform/SystemLog.h"

#include <mutex>
#include <string>
#include <vector>

namespace orvanta::test {

/// A system log that keeps every message, for tests to look at. Safe from all threads.
class RecordingLog final : public SystemLog {
public:
    struct Message {
        LogLevel level = LogLevel::debug;
        std::string subsystem;
        std::string category;
        std::string text;
    };

    void write(const LogRecord& record) override;

    [[nodiscard]] std::vector<Message> messages() const;
    /// The texts alone, in order.
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] bool has(LogLevel level, const std::string& text) const;
    void clear();

private:
    mutable std::mutex mutex_;
    std::vector<Message> messages_;
};

} // namespace orvanta::test
