#include "app/bridge/ThemeBridge.h"

#include "app/bridge/Text.h"
#include "app/popover/PanelText.h"

#include <QColor>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariant>
#include <algorithm>
#include <array>

namespace orvanta {
namespace {

constexpr auto kThemeProperty = "orvanta.theme";

struct PaletteField {
    const char* name;
    ThemeColor ThemePalette::*color;
};

constexpr std::array kPaletteFields{
    PaletteField{"accent", &ThemePalette::accent},
    PaletteField{"accentSecondary", &ThemePalette::accentSecondary},
    PaletteField{"accentGlow", &ThemePalette::accentGlow},
    PaletteField{"boostAmber", &ThemePalette::boostAmber},
    PaletteField{"warmOrange", &ThemePalette::warmOrange},
    PaletteField{"gradientStart", &ThemePalette::gradientStart},
    PaletteField{"gradientEnd", &ThemePalette::gradientEnd},
    PaletteField{"green", &ThemePalette::green},
    PaletteField{"yellow", &ThemePalette::yellow},
    PaletteField{"red", &ThemePalette::red},
    PaletteField{"blue", &ThemePalette::blue},
    PaletteField{"purple", &ThemePalette::purple},
    PaletteField{"featureVolume", &ThemePalette::featureVolume},
    PaletteField{"featureRouting", &ThemePalette::featureRouting},
    PaletteField{"featureEQ", &ThemePalette::featureEQ},
    PaletteField{"featureCompressor", &ThemePalette::featureCompressor},
    PaletteField{"featureRecording", &ThemePalette::featureRecording},
    PaletteField{"featureBalance", &ThemePalette::featureBalance},
    PaletteField{"featureShortcuts", &ThemePalette::featureShortcuts},
};

QColor colorOf(const ThemeColor& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.opacity));
}

} // namespace

ThemeBridge::ThemeBridge(ThemeManager& manager)
    : manager_(manager),
      choice_(manager.choice.get()),
      observation_(manager.choice.observe([this](const ThemeChoice& coming) {
          choice_ = coming;
          Q_EMIT changed();
      })) {}

ThemeBridge* ThemeBridge::create(QQmlEngine* engine, QJSEngine* /*scriptEngine*/) {
    auto* const bridge = engine->property(kThemeProperty).value<ThemeBridge*>();
    Q_ASSERT(bridge != nullptr);
    QJSEngine::setObjectOwnership(bridge, QJSEngine::CppOwnership);
    return bridge;
}

void ThemeBridge::setFor(QQmlEngine& engine, ThemeBridge& bridge) {
    engine.setProperty(kThemeProperty, QVariant::fromValue(&bridge));
}

QVariantMap ThemeBridge::colors() const {
    const ThemePalette& palette = paletteOf(choice_);
    QVariantMap colors;
    for (const PaletteField& field : kPaletteFields)
        colors.insert(QLatin1String(field.name), colorOf(palette.*field.color));
    return colors;
}

QStringList ThemeBridge::themeNames() const {
    QStringList names;
    for (const ThemeChoice choice : kThemeChoices)
        names.append(qText(displayName(choice)));
    return names;
}

int ThemeBridge::themeIndex() const {
    return static_cast<int>(std::ranges::find(kThemeChoices, choice_) - kThemeChoices.begin());
}

void ThemeBridge::chooseTheme(int index) {
    if (index >= 0 && index < static_cast<int>(kThemeChoices.size()))
        manager_.choice.set(kThemeChoices.at(static_cast<std::size_t>(index)));
}

QString ThemeBridge::themeHelp() const {
    return qText(panelText::themeHelp(displayName(choice_)));
}

bool ThemeBridge::isTextThickened() const {
    return QQuickWindow::graphicsApi() == QSGRendererInterface::Software;
}

void ThemeBridge::setWishes(bool isHighContrast, bool isMotionReduced) {
    isHighContrast_ = isHighContrast;
    isMotionReduced_ = isMotionReduced;
    Q_EMIT wishesChanged();
}

} // namespace orvanta
