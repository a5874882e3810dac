#include "app/drawing/LevelMeter.h"

#include "app/drawing/withOpacity.h"
#include "app/popover/MeterLayout.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <array>
#include <cmath>

namespace orvanta {
namespace {

constexpr std::size_t kFillSteps = MeterLayout::stepCount;
constexpr float kFirstOpacity = 0.62F;
/// Of a recording's: at its beginning, middle and end.
constexpr std::array kRecordingOpacities{0.7F, 0.9F, 1.0F};

float fillOpacity(std::size_t step, bool isRecording) {
    const float share = static_cast<float>(step) / static_cast<float>(kFillSteps - 1);
    if (!isRecording)
        return std::lerp(kFirstOpacity, 1.0F, share);
    const auto& [first, middle, last] = kRecordingOpacities;
    return share < 0.5F ? std::lerp(first, middle, 2 * share)
                        : std::lerp(middle, last, 2 * share - 1);
}

/// What the meter is made of, from back to front.
struct MeterNode final : QSGNode {
    explicit MeterNode(QQuickWindow& window) {
        for (auto& zone : zones)
            zone = append(window);
        for (auto& step : fill)
            step = append(window);
        for (auto& gap : gaps)
            gap = append(window);
    }

    QSGRectangleNode* append(QQuickWindow& window) {
        auto* const node = window.createRectangleNode();
        appendChildNode(node);
        return node;
    }

    std::array<QSGRectangleNode*, 3> zones{};
    std::array<QSGRectangleNode*, kFillSteps> fill{};
    std::array<QSGRectangleNode*, 2> gaps{};
};

void place(QSGRectangleNode& node, const QRectF& rectangle, const QColor& color) {
    node.setRect(rectangle);
    node.setColor(color);
}

} // namespace

LevelMeter::LevelMeter(QQuickItem* parent) : AssistedItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &LevelMeter::lookChanged, this, &QQuickItem::update);
}

void LevelMeter::setApp(AppItem* app) {
    if (app == app_)
        return;
    app_ = app;
    // Another application's meter begins at rest.
    ballistics_ = {};
    start();
    update();
    Q_EMIT appChanged();
}

void LevelMeter::setClock(LevelClock* clock) {
    if (clock == clock_)
        return;
    if (clock_ != nullptr)
        disconnect(clock_, nullptr, this, nullptr);
    clock_ = clock;
    if (clock != nullptr) {
        connect(clock, &LevelClock::started, this, &LevelMeter::start);
        connect(clock, &LevelClock::ticked, this, &LevelMeter::tick);
    }
    start();
    Q_EMIT clockChanged();
}

void LevelMeter::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemVisibleHasChanged && data.boolValue)
        start();
    // What was on a pixel of one screen is between two of another.
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    AssistedItem::itemChange(change, data);
}

void LevelMeter::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    AssistedItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void LevelMeter::start() {
    if (const LevelClock* const clock = clock_.data())
        ballistics_.start(clock->now());
}

void LevelMeter::tick() {
    const AppItem* const app = app_.data();
    const LevelClock* const clock = clock_.data();
    if (app == nullptr || clock == nullptr || !isVisible())
        return;
    ballistics_.tick(clock->now(), app->level());
    if (fillWidth() != drawnWidth_ || levelZone(level()) != drawnZone_)
        update();
}

double LevelMeter::screenRatio() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
}

double LevelMeter::fillWidth() const {
    return onScreenPixel(level() * width(), screenRatio());
}

QColor LevelMeter::fillColor() const {
    if (isRecording_)
        return red_;
    switch (levelZone(level())) {
    case LevelZone::green:
        return green_;
    case LevelZone::yellow:
        return yellow_;
    case LevelZone::red:
        break;
    }
    return red_;
}

QSGNode* LevelMeter::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    auto* const node = old != nullptr ? static_cast<MeterNode*>(old) : new MeterNode(*window());
    drawnWidth_ = fillWidth();
    drawnZone_ = levelZone(level());

    const MeterLayout layout = meterLayout(width(), drawnWidth_, screenRatio());
    const double first = layout.yellowStart;
    const double second = layout.redStart;
    place(*node->zones[0], {0, 0, first, height()}, withOpacity(green_, 0.08F));
    place(*node->zones[1], {first, 0, second - first, height()}, withOpacity(yellow_, 0.06F));
    place(*node->zones[2], {second, 0, width() - second, height()}, withOpacity(red_, 0.06F));

    double x = 0.0;
    for (std::size_t index = 0; index < node->fill.size(); ++index) {
        const double end = layout.stepEnds.at(index);
        place(*node->fill.at(index), {x, layout.line, end - x, height() - 2 * layout.line},
              withOpacity(fillColor(), fillOpacity(index, isRecording_)));
        x = end;
    }
    place(*node->gaps[0], {first, 0, layout.line, height()}, well_);
    place(*node->gaps[1], {second, 0, layout.line, height()}, well_);
    return node;
}

} // namespace orvanta
