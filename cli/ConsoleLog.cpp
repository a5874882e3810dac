#include "cli/ConsoleLog.h"

namespace orvanta::cli {

void ConsoleLog::write(const LogRecord& record) {
    if (record.level == LogLevel::error && record.category == "tapManager") {
        const std::scoped_lock guard(mutex_);
        lastError_ = record.message;
    }
    if (next_ != nullptr)
        next_->write(record);
}

std::string ConsoleLog::lastError() const {
    const std::scoped_lock guard(mutex_);
    return lastError_;
}

} // namespace orvanta::cli
