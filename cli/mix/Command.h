#pragma once

#include "cli/mix/Mixer.h"
#include "cli/mix/Words.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvanta::cli {

/// What the session does when a command has been answered.
enum class Then { goOn, wait, showLevels, quit };

struct Reply {
    /// Whole lines.
    std::string text;
    Then then = Then::goOn;
    /// For how long; absent where that is the session's to choose.
    std::optional<double> seconds = std::nullopt;
};

/// One thing that a session can be asked for.
struct Command {
    /// One word or two.
    std::string_view name;
    /// As the help shows them.
    std::string_view arguments;
    std::string_view help;
    /// How many words may follow the name.
    std::size_t fewest = 0;
    std::size_t most = 0;
    /// On the main thread. Throws a `CommandError` where it cannot be done.
    Reply (*run)(Mixer& mixer, Words arguments);
};

/// Rows of the table, by what they are about.
[[nodiscard]] std::span<const Command> viewCommands();
[[nodiscard]] std::span<const Command> tapCommands();
[[nodiscard]] std::span<const Command> soundCommands();
[[nodiscard]] std::span<const Command> recordingCommands();
[[nodiscard]] std::span<const Command> masterCommands();
[[nodiscard]] std::span<const Command> profileCommands();
[[nodiscard]] std::span<const Command> sessionCommands();

} // namespace orvanta::cli
