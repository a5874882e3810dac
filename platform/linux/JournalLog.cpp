#include "platform/linux/JournalLog.h"

#include <cstdint>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <utility>

namespace orvanta {
namespace {

/// Severity as the system log has always counted it.
std::string_view priority(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return "7";
    case LogLevel::info:
        return "6";
    case LogLevel::error:
        return "3";
    }
    return "6";
}

void appendLittleEndian(std::string& entry, std::uint64_t value) {
    for (unsigned shift = 0; shift < 64; shift += 8)
        entry.push_back(static_cast<char>((value >> shift) & 0xFFU));
}

/// A value of one line stands behind "NAME="; one with line feeds behind its length.
void appendField(std::string& entry, std::string_view name, std::string_view value) {
    entry.append(name);
    if (value.find('\n') == std::string_view::npos) {
        entry.append("=");
    } else {
        entry.append("\n");
        appendLittleEndian(entry, value.size());
    }
    entry.append(value).append("\n");
}

} // namespace

JournalLog::JournalLog(std::string identifier, std::string socketPath, int fallbackDescriptor)
    : identifier_(std::move(identifier)),
      socketPath_(std::move(socketPath)),
      socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
      fallback_(LogLevel::debug, fallbackDescriptor) {}

JournalLog::~JournalLog() {
    if (socket_ >= 0)
        ::close(socket_);
}

void JournalLog::write(const LogRecord& record) {
    std::string entry;
    appendField(entry, "PRIORITY", priority(record.level));
    appendField(entry, "SYSLOG_IDENTIFIER", identifier_);
    appendField(entry, "ORVANTA_SUBSYSTEM", record.subsystem);
    appendField(entry, "ORVANTA_CATEGORY", record.category);
    appendField(entry, "MESSAGE", withoutTrailingLineFeed(record.message));
    if (!send(entry))
        fallback_.write(record);
}

bool JournalLog::send(const std::string& entry) const {
    // The address goes with every entry instead of a connection, so that a restart of the journal
    // needs no care.
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath_.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, socketPath_.data(), socketPath_.size());
    const ssize_t sent =
        ::sendto(socket_, entry.data(), entry.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                 // The socket functions take every kind of address under this one type.
                 reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return sent == static_cast<ssize_t>(entry.size());
}

} // namespace orvanta
