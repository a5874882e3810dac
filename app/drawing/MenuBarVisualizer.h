#pragma once

#include "app/drawing/Fonts.h"
#include "app/drawing/VisualizerBars.h"

#include <QColor>
#include <QImage>
#include <QSize>

namespace orvanta {

/// Turns a level into pictures of five bars, small enough for the menu bar or a tray. Made for an
/// item that moves with the sound; the item that there is shows its symbol only.
///
/// The pictures are templates: one colour, and a shape in their opacity, for a desktop that colours
/// icons itself (QIcon::setIsMask). Main thread.
class MenuBarVisualizer {
public:
    static constexpr int barCount = VisualizerBars::barCount;
    /// Of every picture, in logical pixels.
    static constexpr QSize iconSize{18, 18};

    struct Look {
        /// The desktop's for labels.
        QColor barColor = Qt::black;
        /// Pixels of a picture for a logical one.
        double devicePixelRatio = 2.0;
        /// The font of the symbol, which is to be loaded.
        const char* symbolFamily = kSymbolFamily;
    };

    MenuBarVisualizer() : MenuBarVisualizer(Look{}) {}

    explicit MenuBarVisualizer(const Look& look) : look_(look) {}

    /// The next picture at a level, 1 at full scale. Without sound, or while it is off, the bars go
    /// down; once they are there, the picture is the symbol "speaker.wave.2.fill" with the
    /// description "Orvanta" (QImage::text, "Description"), and nothing at all where the font is
    /// not loaded.
    [[nodiscard]] QImage nextFrame(float level);

    /// As at the beginning, but on or off as it is.
    void reset() { bars_ = {}; }

    [[nodiscard]] bool isEnabled() const { return isEnabled_; }

    void setEnabled(bool isEnabled) { isEnabled_ = isEnabled; }

    /// 0 to 1, before they are drawn: no bar of a picture is lower than 2.
    [[nodiscard]] const VisualizerBars::Heights& barHeights() const { return bars_.heights(); }

    /// The held peak.
    [[nodiscard]] float previousLevel() const { return bars_.previousLevel(); }

private:
    [[nodiscard]] QImage idleFrame();
    [[nodiscard]] QImage emptyImage() const;
    [[nodiscard]] QImage barsImage() const;
    [[nodiscard]] QImage symbolImage() const;

    Look look_;
    VisualizerBars bars_;
    bool isEnabled_ = true;
};

} // namespace orvanta
