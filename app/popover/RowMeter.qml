import QtQuick
import Orvanta

/// The level of an application, with its scale in it.
Item {
    id: meter

    required property MixerBridge mixer
    required property AppItem item

    implicitHeight: 8

    component ScaleText: Text {
        anchors.verticalCenter: parent?.verticalCenter
        color: Theme.text2
        opacity: Theme.textOpacity(0.25)
        horizontalAlignment: Text.AlignLeft
        font: Theme.meterScale
        Accessible.ignored: true
    }

    Rectangle {
        y: 1
        width: parent.width
        height: parent.height
        radius: Theme.radiusTrack
        color: Theme.lip
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusTrack
        color: Theme.well
    }
    LevelMeter {
        anchors.fill: parent
        app: meter.item
        clock: meter.mixer.clock
        isRecording: meter.item.isRecording
        well: Theme.well
        green: Theme.green
        yellow: Theme.yellow
        red: Theme.red
        Accessible.role: Accessible.ProgressBar
        Accessible.name: "Level of " + meter.item.name
        Accessible.readOnly: true
    }
    ScaleText {
        x: 3
        text: "-∞"
    }
    ScaleText {
        x: parent.width * 0.85 - width - 4
        text: "-6"
    }
    ScaleText {
        x: parent.width - width - 3
        text: "0dB"
    }
}
