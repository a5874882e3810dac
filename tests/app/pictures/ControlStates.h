#pragma once

#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <functional>

namespace orvanta::test {

/// A sheet of controls, each brought into the state that it is called by ("hover Button", "pressed
/// Switch", "focus Slider"). Only one control can be in such a state at a time, so the picture is
/// put together from many.
class ControlStates {
public:
    /// `settle` lets what was done to the window show.
    ControlStates(QQuickItem& sheet, std::function<void()> settle);

    [[nodiscard]] QImage picture();

private:
    enum class State { hover, pressed, focus };

    void paint(QImage& onto, State state, const QString& prefix);
    void enter(State state, QQuickItem& control);
    void leave(State state);

    QQuickItem& sheet_;
    const std::function<void()> settle_;
    QQuickWindow window_;
};

} // namespace orvanta::test
