import QtQuick
import Orvanta

/// Three knobs of the equaliser under the line of what they do.
Item {
    id: equalizer

    required property AppItem item

    implicitHeight: 64

    ResponseCanvas {
        x: 50
        y: 2
        width: 294
        height: 28
        gains: equalizer.item.gains
    }
    Row {
        x: 50
        y: 32
        spacing: 14

        Repeater {
            model: RowValues.simpleBands

            SimpleBand {
                required property var modelData

                width: (294 - 28) / 3
                item: equalizer.item
                band: modelData.band
                text: modelData.text
            }
        }
    }
}
