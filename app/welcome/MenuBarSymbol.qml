import QtQuick
import Orvanta

/// A panel that opens from a bar, which the icon font has no glyph for.
Item {
    width: 44
    height: 44
    Accessible.ignored: true

    component Stroke: Rectangle {
        height: 4
        radius: 2
        color: Theme.legible(Theme.accent, 0)
        antialiasing: true
    }

    Rectangle {
        x: 2
        y: 2
        width: 40
        height: 40
        radius: 6
        color: Theme.white(0)
        border.width: 4
        border.color: Theme.legible(Theme.accent, 0)
    }
    Stroke {
        x: 4
        y: 13
        width: 36
    }
    Stroke {
        x: 12.5
        y: 27
        width: 13
        rotation: -42
    }
    Stroke {
        x: 19.5
        y: 27
        width: 13
        rotation: 42
    }
}
