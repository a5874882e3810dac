#include "app/themes/ThemePalette.h"

namespace orvanta {
namespace {

constexpr auto hsl = ThemeColor::fromHSL;

constexpr ThemePalette kClassic{
    .accent = hsl(42, 0.9, 0.55, 1),
    .accentSecondary = hsl(42, 0.85, 0.58, 1),
    .accentGlow = hsl(42, 0.9, 0.55, 0.18),
    .boostAmber = hsl(30, 0.9, 0.55, 1),
    .warmOrange = hsl(25, 0.9, 0.55, 1),
    .gradientStart = hsl(42, 0.92, 0.58, 1),
    .gradientEnd = hsl(15, 0.75, 0.48, 1),
    .green = hsl(150, 0.7, 0.45, 1),
    .yellow = hsl(60, 0.9, 0.5, 1),
    .red = hsl(0, 0.85, 0.55, 1),
    .blue = hsl(210, 0.85, 0.55, 1),
    .purple = hsl(280, 0.7, 0.55, 1),
    .featureVolume = hsl(210, 0.8, 0.55, 1),
    .featureRouting = hsl(270, 0.7, 0.55, 1),
    .featureEQ = hsl(180, 0.7, 0.45, 1),
    .featureCompressor = hsl(330, 0.7, 0.55, 1),
    .featureRecording = hsl(0, 0.75, 0.55, 1),
    .featureBalance = hsl(40, 0.8, 0.5, 1),
    .featureShortcuts = hsl(150, 0.6, 0.45, 1),
};

constexpr ThemePalette kMeridane{
    .accent = hsl(215, 0.55, 0.55, 1),
    .accentSecondary = hsl(215, 0.5, 0.62, 1),
    .accentGlow = hsl(215, 0.55, 0.55, 0.22),
    .boostAmber = hsl(25, 0.7, 0.5, 1),
    .warmOrange = hsl(20, 0.65, 0.5, 1),
    .gradientStart = hsl(215, 0.55, 0.55, 1),
    .gradientEnd = hsl(240, 0.35, 0.4, 1),
    .green = kClassic.green,
    .yellow = kClassic.yellow,
    .red = kClassic.red,
    .blue = kClassic.blue,
    .purple = kClassic.purple,
    .featureVolume = hsl(190, 0.7, 0.5, 1),
    .featureRouting = hsl(300, 0.5, 0.55, 1),
    .featureEQ = hsl(160, 0.6, 0.45, 1),
    .featureCompressor = hsl(350, 0.6, 0.55, 1),
    .featureRecording = hsl(10, 0.7, 0.52, 1),
    .featureBalance = hsl(50, 0.6, 0.5, 1),
    .featureShortcuts = hsl(130, 0.5, 0.48, 1),
};

} // namespace

const ThemePalette& ThemePalette::classic() noexcept {
    return kClassic;
}

const ThemePalette& ThemePalette::meridane() noexcept {
    return kMeridane;
}

} // namespace orvanta
