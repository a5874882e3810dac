import QtQuick
import Orvanta

/// How loud the application is to be, and is.
Item {
    id: line

    required property MixerBridge mixer
    required property AppItem item

    implicitHeight: 28

    IconButton {
        objectName: "mute"
        x: 29 - width / 2
        y: 8 - height / 2
        width: 24
        height: 20
        size: 15
        radius: Theme.radiusSmall
        symbol: line.item.muteSymbol
        isLit: line.item.isMuted
        tint: Theme.red
        restColor: Theme.text1
        help: line.item.muteHelp
        label: line.item.muteLabel
        onClicked: line.item.toggleMute()
    }
    VolumeSlider {
        id: slider

        objectName: "volume"
        x: 50
        width: 250
        label: line.item.volumeLabel
        valueText: line.item.volumeValue
        tint: Theme[line.item.volumeColor]
        modelValue: line.item.volume
        onBegan: line.item.beginVolumeDrag()
        onMoved: value => line.item.moveVolume(value)
        onEnded: line.item.endVolumeDrag()
    }
    ReadOut {
        x: 344 - width
        width: 42
        anchors.verticalCenter: slider.verticalCenter
        text: line.item.volumeReadOut
        color: line.item.volume > 1 ? Theme.legible(Theme[line.item.volumeColor], 0.1) : Theme.text1
    }
    RowMeter {
        x: 50
        y: 18
        width: 250
        mixer: line.mixer
        item: line.item
    }
}
