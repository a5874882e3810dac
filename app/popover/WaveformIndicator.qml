import QtQuick
import Orvanta

/// Four bars that dance beside the name of what plays. A decoration: it does not measure. It moves a
/// few times a second only, which the eye takes for a dance and the processor hardly notices.
Item {
    id: indicator

    /// Heights of the bars, one step after the other.
    readonly property var steps: [[4, 8, 6, 3], [6, 5, 8, 4], [8, 4, 5, 7], [5, 7, 3, 8], [3, 6, 7, 5]]
    property int step: 0
    readonly property bool isSeen: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized

    implicitWidth: 13
    implicitHeight: 10
    Accessible.ignored: true

    Timer {
        interval: 140
        repeat: true
        running: indicator.visible && Theme.isMoving && indicator.isSeen
        onTriggered: indicator.step = (indicator.step + 1) % indicator.steps.length
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        height: 8
        spacing: 1.5

        Repeater {
            model: 4

            Rectangle {
                required property int index

                anchors.verticalCenter: parent?.verticalCenter
                width: 2
                height: indicator.steps[indicator.step][index]
                radius: 1
                color: Theme.green
            }
        }
    }
}
