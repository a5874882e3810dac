#pragma once

#include <array>
#include <string_view>

namespace orvanta {

/// A window that opens on demand. Code asks for it by identifier and finds it again by title.
struct WindowName {
    std::string_view identifier;
    std::string_view title;
};

inline constexpr WindowName kAboutWindow{"about", "About Orvanta"};
inline constexpr WindowName kOnboardingWindow{"onboarding", "Welcome to Orvanta"};
inline constexpr WindowName kConsoleWindow{"command-center", "Sound Command Center"};

/// Opens when there is something to say of updates; no desktop opens it by itself.
inline constexpr WindowName kUpdateWindow{"updates", "Software Update"};

/// Those that a desktop may open by itself at the launch.
inline constexpr std::array kWindowNames{kAboutWindow, kOnboardingWindow, kConsoleWindow};

} // namespace orvanta
