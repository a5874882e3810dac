import QtQuick
import Orvanta

/// Parts a menu.
Item {
    implicitHeight: 9

    Rectangle {
        x: 6
        y: 4
        width: parent.width - 12
        height: 1
        color: Theme.divider
    }
}
