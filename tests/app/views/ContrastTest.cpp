// Whether words and symbols stand out from what they stand on, for those who ask their desktop for
// much contrast.

#include "tests/app/views/PanelTest.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QFont>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <tuple>

namespace orvanta::test {
namespace {

constexpr auto kSymbols = "Framework7 Icons";
constexpr double kForText = 4.5;
constexpr double kForSymbols = 3.0;

double luminanceOf(const QColor& color) {
    const auto linear = [](float part) {
        const auto share = static_cast<double>(part);
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [dark, light] = std::minmax({luminanceOf(a), luminanceOf(b)});
    return (light + 0.05) / (dark + 0.05);
}

QColor over(const QColor& below, const QColor& above, double opacity) {
    const auto share = static_cast<float>(opacity * static_cast<double>(above.alphaF()));
    const auto mixed = [share](float under, float over) {
        return std::lerp(under, over, share);
    };
    return QColor::fromRgbF(mixed(below.redF(), above.redF()),
                            mixed(below.greenF(), above.greenF()),
                            mixed(below.blueF(), above.blueF()));
}

class Contrast : public PanelTest, public testing::WithParamInterface<ThemeChoice> {
protected:
    void SetUp() override {
        themes.choice.set(GetParam());
        theme.setLook({.isHighContrast = true, .isMotionReduced = true, .hasCompositor = true});
    }

    /// Colours that an item writes with; none of what does not write.
    [[nodiscard]] static std::vector<QColor> inksOf(QQuickItem& item) {
        const QString text = item.property("text").toString().trimmed();
        // Emoji have colours of their own.
        if (text.isEmpty() ||
            std::ranges::any_of(text, [](QChar part) { return part.isSurrogate(); }))
            return {};
        if (item.inherits("QQuickText"))
            return {item.property("color").value<QColor>()};
        if (item.inherits("orvanta::GradientText"))
            return {item.property("startColor").value<QColor>(),
                    item.property("endColor").value<QColor>()};
        return {};
    }

    [[nodiscard]] static double opacityOf(const QQuickItem& item) {
        double opacity = 1.0;
        for (const QQuickItem* above = &item; above != nullptr; above = above->parentItem())
            opacity *= above->opacity();
        return opacity;
    }

    /// What most of the item stands on.
    [[nodiscard]] static QColor groundOf(const QImage& picture, QQuickItem& item) {
        const QRectF place = item.mapRectToScene(item.boundingRect());
        std::map<QRgb, int> counts;
        for (int y = static_cast<int>(std::ceil(place.top())); y < place.bottom(); ++y)
            for (int x = static_cast<int>(std::ceil(place.left())); x < place.right(); ++x)
                if (picture.rect().contains(x, y))
                    ++counts[picture.pixel(x, y)];
        if (counts.empty())
            return {};
        return QColor::fromRgb(std::ranges::max_element(counts, {}, [](const auto& entry) {
                                   return entry.second;
                               })->first);
    }

    void expectAllStandsOut() {
        settleView();
        std::vector<std::tuple<QQuickItem*, std::vector<QColor>, double>> written;
        for (QQuickItem* const item : visibleItems())
            if (const auto inks = inksOf(*item); !inks.empty() && item->isEnabled())
                written.emplace_back(item, inks, opacityOf(*item));
        ASSERT_FALSE(written.empty());
        std::vector<double> own;
        for (const auto& [item, inks, opacity] : written)
            own.push_back(item->opacity());
        for (const auto& [item, inks, opacity] : written)
            item->setOpacity(0.0);
        const QImage blank = window->grabWindow();
        for (std::size_t index = 0; index < written.size(); ++index)
            std::get<0>(written[index])->setOpacity(own[index]);
        for (const auto& [item, inks, opacity] : written) {
            const QColor ground = groundOf(blank, *item);
            if (!ground.isValid() || opacity == 0.0)
                continue;
            const bool isSymbol = item->property("font").value<QFont>().family() == kSymbols ||
                                  item->property("font").value<QFont>().pixelSize() >= 24;
            for (const QColor& ink : inks)
                EXPECT_GE(contrast(over(ground, ink, opacity), ground),
                          isSymbol ? kForSymbols : kForText)
                    << item->property("text").toString().toStdString() << " of "
                    << item->parentItem()->metaObject()->className() << ", "
                    << ink.name().toStdString() << " at " << opacity << " on "
                    << ground.name().toStdString();
        }
    }
};

TEST_P(Contrast, IsEnoughInAnEmptyPanel) {
    showPanel();
    shell->setCanCheckForUpdates(true);
    expectAllStandsOut();
}

TEST_P(Contrast, IsEnoughInUnfoldedRows) {
    addDevice("monitors", "Studio Monitors");
    for (const std::int32_t pid : {10, 11, 12})
        listAndTap(pid, "Program " + std::to_string(pid));
    list(13, "Idle", std::nullopt, false);
    refresh();
    model->setEQ(10, 3, 4.0F);
    model->setEQ(11, 3, 4.0F);
    for (const std::int32_t pid : {10, 11})
        model->setNoiseGate(pid, true, -60.0F);
    model->setVolume(10, 1.4F);
    model->setVolume(11, 1.8F);
    model->toggleRecording(10);
    model->toggleMute(11);
    showPanel();
    itemOf(10).toggleEQ();
    itemOf(11).toggleEQ();
    itemOf(11).toggleEQMode();
    itemOf(11).toggleCompressorAdvanced();
    settleView();
    for (const double y : {0.0, 300.0, 600.0}) {
        appList()->setProperty("contentY", y);
        expectAllStandsOut();
    }
}

TEST_P(Contrast, IsEnoughWhereEverythingIsSwitchedOn) {
    model->toggleMuteAll();
    model->launchAtLogin.set(true);
    model->autoTapEnabled.set(true);
    showPanel();
    expectAllStandsOut();
}

TEST_P(Contrast, IsEnoughInMenus) {
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    for (const char* const name : {"Compressor preset for Vinyl", "Presets"}) {
        click(name);
        expectAllStandsOut();
        key(Qt::Key_Escape);
    }
}

TEST_P(Contrast, IsEnoughInTheAboutWindow) {
    std::ofstream(crashReporter.logDir() / "crash-2026-11-22T10:00:00Z.log") << "it broke";
    shell->setCanCheckForUpdates(true);
    show("welcome/AboutWindow.qml");
    expectAllStandsOut();
}

TEST_P(Contrast, IsEnoughOnEveryPageOfTheWelcome) {
    show("welcome/OnboardingWindow.qml");
    for (const char* const wayOn : {"Next", "Next", "Get Started"}) {
        expectAllStandsOut();
        click(wayOn);
    }
}

INSTANTIATE_TEST_SUITE_P(InBothThemes, Contrast,
                         testing::Values(ThemeChoice::classic, ThemeChoice::meridane));

} // namespace
} // namespace orvanta::test
