#include "cli/ConsoleLog.h"

namespace orvanta::cli {

void ConsoleLog::write(const LogRecord& record) {
    const bool isOurs = record.category == "tapManager" || record.category == "recorder";
    if (record.level == LogLevel::error && isOurs) {
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

void ConsoleLog::forgetLastError() {
    const std::scoped_lock guard(mutex_);
    lastError_.clear();
}

} // namespace orvanta::cli
