#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvanta {

/// The user's lasting key-value domain. A value that was set reads back at once and lasts beyond
/// the program, though the disk may learn of it a moment later. A value of another kind than the
/// one asked for reads as absent. No operation waits for a disk or reports an error.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual bool has(std::string_view key) const = 0;

    /// Bytes, for instance of a JSON text.
    [[nodiscard]] virtual std::optional<std::string> data(std::string_view key) const = 0;
    virtual void setData(std::string_view key, std::string_view bytes) = 0;

    /// False when absent.
    [[nodiscard]] virtual bool boolean(std::string_view key) const = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;

    [[nodiscard]] virtual std::optional<std::string> string(std::string_view key) const = 0;
    virtual void setString(std::string_view key, std::string_view text) = 0;
};

} // namespace orvanta
