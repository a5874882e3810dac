#include "tests/support/RecordingLog.h"

#include <algorithm>

namespace orvanta::test {

void RecordingLog::write(const LogRecord& record) {
    const std::scoped_lock guard(mutex_);
    messages_.push_back({record.level, std::string(record.subsystem), std::string(record.category),
                         std::string(record.message)});
}

std::vector<RecordingLog::Message> RecordingLog::messages() const {
    const std::scoped_lock guard(mutex_);
    return messages_;
}

std::vector<std::string> RecordingLog::texts() const {
    std::vector<std::string> texts;
    for (const Message& message : messages())
        texts.push_back(message.text);
    return texts;
}

bool RecordingLog::has(LogLevel level, const std::string& text) const {
    const auto all = messages();
    return std::any_of(all.begin(), all.end(), [&](const Message& message) {
        return message.level == level && message.text == text;
    });
}

void RecordingLog::clear() {
    const std::scoped_lock guard(mutex_);
    messages_.clear();
}

} // namespace orvanta::test
