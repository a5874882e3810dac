import QtQuick
import Orvanta

/// The compressor's three bands, each with what it takes away.
Column {
    id: bands

    required property AppItem item

    Repeater {
        model: ["Low", "Mid", "High"]

        Item {
            id: bandItem

            required property int index
            required property string modelData

            width: bands.width
            height: 57

            Rectangle {
                visible: bandItem.index > 0
                x: 16
                y: -4
                width: parent.width - 32
                height: 1
                color: Theme.divider
            }
            Label {
                x: 16
                y: 13
                text: bandItem.modelData
                font: Theme.menuHeading
            }
            ReductionBar {
                x: 16
                y: 31
                width: 38
                share: bands.item.reductions[bandItem.index] ?? 0
                label: bandItem.modelData + " gain reduction"
            }
            Column {
                y: 2
                spacing: 2

                Repeater {
                    model: RowValues.compressorFields

                    CompressorQuantity {
                        required property int index
                        required property var modelData

                        width: bands.width
                        item: bands.item
                        band: bandItem.index
                        field: index
                        range: modelData
                    }
                }
            }
        }
    }
}
