import QtQuick
import Orvanta

/// Ten faders on the canvas of their response line: each stands at its frequency, and both are on
/// one scale.
Item {
    id: equalizer

    required property AppItem item

    implicitHeight: 118

    ResponseCanvas {
        id: canvas

        x: 32
        y: 2
        width: 312
        height: 96
        gains: equalizer.item.gains
        hasDecades: false
    }
    Repeater {
        model: RowValues.bands

        Item {
            id: band

            required property int index
            required property var modelData

            x: canvas.x + modelData.share * canvas.width
            y: canvas.y

            BandFader {
                id: fader

                objectName: "fader" + band.index
                x: -width / 2
                y: 2
                width: 24
                height: 92
                travelStart: -2
                travelEnd: 94
                label: equalizer.item.bandLabels[band.index]
                valueText: RowValues.gainValue(value)
                modelValue: equalizer.item.gains[band.index]
                onMoved: value => equalizer.item.setGain(band.index, value)
            }
            Text {
                x: -width / 2
                y: 99
                text: band.modelData.label
                color: RowValues.isGainLit(fader.value) ? Theme.accentText : Theme.text3
                horizontalAlignment: Text.AlignLeft
                font: Theme.micro
                Accessible.ignored: true
            }
        }
    }
}
