import QtQuick
import Orvanta

/// Which of its named settings the compressor has.
Item {
    id: line

    required property AppItem item

    implicitHeight: 24

    Item {
        anchors.fill: parent
        opacity: line.item.isCompressorOff ? Theme.textOpacity(0.5) : 1

        SymbolGlyph {
            x: 29 - width / 2
            anchors.verticalCenter: parent.verticalCenter
            name: "waveform.path"
            size: 14
            color: Theme.legible(Theme.featureCompressor, 0)
        }
        Label {
            x: 50
            anchors.verticalCenter: parent.verticalCenter
            text: "Compressor"
        }
    }
    MenuButton {
        objectName: "compressor"
        x: 188
        width: 84
        anchors.verticalCenter: parent.verticalCenter
        isSmall: true
        text: line.item.compressorPreset
        label: line.item.compressorLabel
        value: line.item.compressorPreset
        menu: PopupMenu {
            Repeater {
                model: RowValues.compressorPresets

                PopupMenuItem {
                    required property int index
                    required property string modelData

                    text: modelData
                    isChosen: line.item.compressorPreset === modelData
                    onTriggered: line.item.applyCompressorPreset(index)
                }
            }
        }
    }
    PlainButton {
        objectName: "compressorAdvanced"
        x: 344 - width
        height: 24
        text: "Advanced"
        textFont: Theme.smallControl
        color: line.item.isCompressorAdvanced ? Theme.text1 : Theme.text2
        trailingSymbol: "chevron.up.chevron.down"
        isExpandable: true
        isExpanded: line.item.isCompressorAdvanced
        hint: RowValues.expansionHint(line.item.isCompressorAdvanced)
        onClicked: line.item.toggleCompressorAdvanced()
    }
}
