import QtQuick
import Orvanta

/// Which page of how many.
Row {
    id: dots

    property int count: 3
    property int current: 0

    spacing: 6
    Accessible.role: Accessible.StaticText
    Accessible.name: "Page " + (current + 1) + " of " + count

    Repeater {
        model: dots.count

        Rectangle {
            required property int index
            readonly property bool isCurrent: index === dots.current

            width: isCurrent ? 18 : 6
            height: 6
            radius: 3
            color: isCurrent ? Theme.accent : Theme.mark

            Behavior on width { SpringMove {} }
        }
    }
}
