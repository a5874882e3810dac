#pragma once

#include "app/automation/IntentParameter.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvanta {

/// The intents, each a type of its own.
enum class AppIntent : std::uint8_t { setVolume, toggleMute, listAudioApps };

/// How an intent is asked for and shown.
struct AppShortcut {
    AppIntent intent;
    std::string_view title;
    /// What a user says, with tokens in braces where a name or a parameter stands.
    std::span<const std::string_view> phrases;
    std::string_view shortTitle;
    /// The name of a symbol; whoever shows it has the symbols.
    std::string_view systemImageName;
    std::optional<IntentParameter> parameter;
};

/// What the program offers to automation. Every intent may be run by anybody at any time, is found
/// without being looked for, and opens no window.
class OrvantaShortcuts {
public:
    /// Stands for the application's name in phrases.
    static constexpr std::string_view applicationNameToken = "{application name}";

    /// In the order in which they are offered.
    [[nodiscard]] static std::span<const AppShortcut> appShortcuts() noexcept;

    /// A phrase of the application of this name; tokens of parameters stay.
    [[nodiscard]] static std::string spoken(std::string_view phrase,
                                            std::string_view applicationName);
};

} // namespace orvanta
