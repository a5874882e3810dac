#pragma once

#include "core/platform/LoginItem.h"

#include <filesystem>
#include <string>

namespace orvanta {

/// A desktop entry among those that a session starts, in the form that freedesktop.org publishes
/// for both.
class AutostartEntry final : public LoginItem {
public:
    struct Program {
        /// Names the entry's file, as in "com.example.player".
        std::string identifier;
        std::string name; ///< for people to read
        /// Of the program itself; absolute.
        std::filesystem::path executable;
    };

    /// `configHome` is the user's folder of settings.
    AutostartEntry(const std::filesystem::path& configHome, Program program);

    /// Whether the entry is there, starts this program from where it is now, and is not switched
    /// off by the desktop's own settings.
    [[nodiscard]] bool isRegistered() const override;

    /// Writes the entry in one step: a session finds all of it or the one before.
    std::optional<std::string> registerItem() override;
    std::optional<std::string> unregisterItem() override;

private:
    /// The value of the key that says what to start.
    [[nodiscard]] std::string command() const;
    [[nodiscard]] std::string entryText() const;

    const std::filesystem::path file_;
    const Program program_;
};

} // namespace orvanta
