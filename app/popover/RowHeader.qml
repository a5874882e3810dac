import QtQuick
import Orvanta

/// The line that every application has: what it is, and whether it is tapped and recorded.
Item {
    id: header

    required property AppItem item

    /// Of a hidden window nothing moves.
    readonly property bool isSeen: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized
    readonly property real nameEnd: (record.visible ? record.x : tap.x) - 8

    implicitHeight: 36

    ProgramIcon {
        x: 16
        y: 5
        item: header.item
    }
    Label {
        id: name

        x: 50
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 1
        width: Math.min(implicitWidth, header.nameEnd - x - (mark.visible ? mark.width + 8 : 0))
        text: header.item.name
        font: Theme.body

        HoverHandler {
            id: nameHover
        }
        HelpTip {
            text: name.text
            isAsked: nameHover.hovered && name.truncated
        }
    }
    WaveformIndicator {
        id: mark

        anchors.verticalCenter: parent.verticalCenter
        x: name.x + name.width + 8
        visible: header.item.isPlaying
    }
    IconButton {
        id: record

        objectName: "record"
        x: 292
        anchors.verticalCenter: parent.verticalCenter
        visible: header.item.isTapped
        symbol: header.item.isRecording ? "stop.circle.fill" : "record.circle"
        isLit: header.item.isRecording
        tint: Theme.red
        help: header.item.recordHelp
        label: header.item.recordLabel
        value: header.item.recordValue
        onClicked: header.item.toggleRecording()

        SequentialAnimation {
            id: pulse

            running: header.item.isRecording && record.visible && Theme.isMoving && header.isSeen
            loops: Animation.Infinite
            onRunningChanged: {
                if (!running)
                    record.symbolOpacity = 1;
            }

            PulseStep { target: record; to: 0.6 }
            PulseStep { target: record; to: 1.0 }
        }
    }
    IconButton {
        id: tap

        objectName: "tap"
        x: 320
        anchors.verticalCenter: parent.verticalCenter
        symbol: "waveform.circle.fill"
        isLit: header.item.isTapped
        help: header.item.tapHelp
        label: header.item.tapLabel
        hint: header.item.tapHint
        onClicked: header.item.toggleTap()
    }
}
