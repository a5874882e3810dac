#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace orvanta {

/// What is dragged on the console's EQ curve, in the middle of the item: a point that glows where
/// its band has a part in the response, and a dim one where not. It reaches 11 to each side. One
/// picture, which moves without being painted again.
class EQCurveHandle : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Of what glows.
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)
    /// Behind a dim one, so that the curve does not show through it.
    Q_PROPERTY(QColor well MEMBER well_ NOTIFY lookChanged)
    Q_PROPERTY(bool isFlat MEMBER isFlat_ NOTIFY lookChanged)
    /// In a ring.
    Q_PROPERTY(bool isHeld MEMBER isHeld_ NOTIFY lookChanged)

public:
    explicit EQCurveHandle(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    QColor color_;
    QColor well_;
    bool isFlat_ = true;
    bool isHeld_ = false;
};

} // namespace orvanta
