#pragma once

#include "app/bridge/AppItem.h"
#include "app/bridge/LevelClock.h"
#include "app/controls/AssistedItem.h"
#include "app/popover/LevelBallistics.h"
#include "app/popover/LevelColors.h"

#include <QColor>
#include <QPointer>

namespace orvanta {

/// A row's meter: three zones and a fill that follows the application's level. It is drawn anew
/// only when its picture changes by a pixel, and rests while it cannot be seen. (Its base is named
/// with the namespace, by which alone the checker of the views finds it.)
class LevelMeter : public orvanta::AssistedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(orvanta::AppItem* app READ app WRITE setApp NOTIFY appChanged)
    Q_PROPERTY(orvanta::LevelClock* clock READ clock WRITE setClock NOTIFY clockChanged)
    /// Red from end to end, however loud.
    Q_PROPERTY(bool isRecording MEMBER isRecording_ NOTIFY lookChanged)
    Q_PROPERTY(QColor well MEMBER well_ NOTIFY lookChanged)
    Q_PROPERTY(QColor green MEMBER green_ NOTIFY lookChanged)
    Q_PROPERTY(QColor yellow MEMBER yellow_ NOTIFY lookChanged)
    Q_PROPERTY(QColor red MEMBER red_ NOTIFY lookChanged)
    /// For assistive tools, when they ask: it tells of no change.
    Q_PROPERTY(double value READ level STORED false)

public:
    explicit LevelMeter(QQuickItem* parent = nullptr);

    [[nodiscard]] AppItem* app() const { return app_; }

    void setApp(AppItem* app);

    [[nodiscard]] LevelClock* clock() const { return clock_; }

    void setClock(LevelClock* clock);

    /// As shown, 0 to 1.
    [[nodiscard]] double level() const { return ballistics_.level(); }

Q_SIGNALS:
    void appChanged();
    void clockChanged();
    void lookChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void start();
    void tick();
    /// Pixels of the screen for a logical one.
    [[nodiscard]] double screenRatio() const;
    /// The fill's end, on a pixel of the screen.
    [[nodiscard]] double fillWidth() const;
    [[nodiscard]] QColor fillColor() const;

    QPointer<AppItem> app_;
    QPointer<LevelClock> clock_;
    LevelBallistics ballistics_;
    bool isRecording_ = false;
    QColor well_;
    QColor green_;
    QColor yellow_;
    QColor red_;
    double drawnWidth_ = 0.0;
    LevelZone drawnZone_ = LevelZone::green;
};

} // namespace orvanta
