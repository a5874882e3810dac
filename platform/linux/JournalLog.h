#pragma once

#include "platform/linux/StandardErrorLog.h"

#include <string>

namespace orvanta {

/// The system journal, spoken to in its own datagram protocol. Subsystem and category are fields
/// of each entry (ORVANTA_SUBSYSTEM, ORVANTA_CATEGORY), so that the journal's reader can pick by
/// them. What the journal does not take (it is not there, it is stuck, the message is beyond its
/// size) goes to standard error instead. Never waits for the journal, and for standard error no
/// longer than StandardErrorLog does.
class JournalLog final : public SystemLog {
public:
    /// `identifier`: the program's name in the journal.
    explicit JournalLog(std::string identifier,
                        std::string socketPath = "/run/systemd/journal/socket",
                        int fallbackDescriptor = STDERR_FILENO);
    JournalLog(const JournalLog&) = delete;
    JournalLog& operator=(const JournalLog&) = delete;
    ~JournalLog() override;

    void write(const LogRecord& record) override;

private:
    [[nodiscard]] bool send(const std::string& entry) const;

    const std::string identifier_;
    const std::string socketPath_;
    const int socket_;
    StandardErrorLog fallback_;
};

} // namespace orvanta
