#pragma once

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>

namespace orvanta {

/// Words or a symbol that go over from one colour into another, in the middle of the item.
class GradientText : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY lookChanged)
    Q_PROPERTY(QFont font MEMBER font_ NOTIFY lookChanged)
    Q_PROPERTY(QColor startColor MEMBER startColor_ NOTIFY lookChanged)
    Q_PROPERTY(QColor endColor MEMBER endColor_ NOTIFY lookChanged)
    /// Downwards; else from left to right.
    Q_PROPERTY(bool isVertical MEMBER isVertical_ NOTIFY lookChanged)

public:
    explicit GradientText(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    void takeSize();

    QString text_;
    QFont font_;
    QColor startColor_;
    QColor endColor_;
    bool isVertical_ = false;
};

} // namespace orvanta
