#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What the panel's header, master row, footer and status bar say.
namespace orvanta::panelText {

/// "1 app", "2 apps".
[[nodiscard]] std::string appCount(std::size_t count);
/// "1 tapped".
[[nodiscard]] std::string tappedCount(std::size_t count);
/// "1 playing".
[[nodiscard]] std::string playingCount(std::size_t count);

inline constexpr std::string_view autoTapHelp = "Automatically tap all playing apps";
[[nodiscard]] std::string_view autoTapSymbol(bool isEnabled) noexcept;
[[nodiscard]] std::string_view autoTapHint(bool isEnabled) noexcept;

/// "Theme: Classic — click to switch".
[[nodiscard]] std::string themeHelp(std::string_view themeName);

/// By the volume alone, 0 to 1, whether muted or not.
[[nodiscard]] std::string_view masterSymbol(float volume) noexcept;

/// Whole percent of a linear value, cut off towards 0; 0 for what is no number.
[[nodiscard]] int percent(float value) noexcept;
/// "72%".
[[nodiscard]] std::string percentReadOut(float value);
/// "72 percent".
[[nodiscard]] std::string masterVolumeValue(float volume);

[[nodiscard]] std::string_view muteAllSymbol(bool isMasterMuted) noexcept;
[[nodiscard]] std::string_view muteAllText(bool isMasterMuted) noexcept;
[[nodiscard]] std::string_view muteAllLabel(bool isMasterMuted) noexcept;
[[nodiscard]] std::string_view launchAtLoginSymbol(bool isEnabled) noexcept;

/// "v1.0.0".
[[nodiscard]] std::string version(std::string_view shortVersion);

} // namespace orvanta::panelText
