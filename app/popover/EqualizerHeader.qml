import QtQuick
import Orvanta

/// Unfolds the equaliser and, unfolded, says how it is shown and what it can be set to.
Item {
    id: header

    required property AppItem item

    implicitHeight: 24

    SymbolGlyph {
        x: 29 - width / 2
        anchors.verticalCenter: parent.verticalCenter
        name: "slider.horizontal.3"
        size: 14
        color: Theme.legible(Theme.featureEQ, 0)
    }
    PlainButton {
        objectName: "equalizer"
        x: 50
        height: 24
        spacing: 9
        text: "EQ"
        textFont: Theme.controlText
        color: Theme.text1
        trailingSymbol: "chevron.up.chevron.down"
        label: header.item.equalizerLabel
        value: header.item.equalizerValue
        hint: header.item.equalizerHint
        isExpandable: true
        isExpanded: header.item.isEQExpanded
        onClicked: header.item.toggleEQ()
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: header.item.isEQExpanded
        spacing: 8

        IconButton {
            width: 20
            height: 20
            visible: !header.item.isEQFlat
            symbol: "arrow.counterclockwise"
            size: 11
            radius: Theme.radiusSmall
            restColor: Theme.text2
            help: "Reset EQ"
            label: "Reset EQ"
            onClicked: header.item.resetEQ()
        }
        PushButton {
            objectName: "equalizerMode"
            isSmall: true
            text: header.item.modeText
            label: header.item.modeLabel
            onClicked: header.item.toggleEQMode()
        }
        PushButton {
            objectName: "equalizerPresets"
            isSmall: true
            text: "Presets"
            trailingSymbol: "chevron.up.chevron.down"
            hasMenu: true
            isExpandable: true
            isExpanded: presets.isOpen
            Accessible.role: Accessible.ButtonMenu
            onClicked: presets.openFor(this)

            LazyMenu {
                id: presets

                menu: EqualizerPresets {
                    item: header.item
                }
            }
        }
    }
}
