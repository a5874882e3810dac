#pragma once

#include "core/platform/SystemLog.h"

#include <mutex>
#include <string>

namespace orvanta::cli {

/// Remembers the last error of the tap engine or a recorder, so that a failed command can say in
/// one sentence what was wrong, and passes everything on to another log where one is given.
class ConsoleLog final : public SystemLog {
public:
    /// `next` may be null.
    explicit ConsoleLog(SystemLog* next) : next_(next) {}

    void write(const LogRecord& record) override;

    /// Empty when there was none, or none since it was forgotten.
    [[nodiscard]] std::string lastError() const;

    /// Before something whose own errors are to be told apart from older ones.
    void forgetLastError();

private:
    SystemLog* next_;
    mutable std::mutex mutex_;
    std::string lastError_;
};

} // namespace orvanta::cli
