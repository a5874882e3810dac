import QtQuick
import Orvanta

/// More of it on the left or on the right. Reaches the sound when the hand lets go.
Item {
    id: line

    required property AppItem item

    readonly property var words: RowValues.balanceWords(slider.value)

    implicitHeight: 24

    component Side: Text {
        property bool isLit: false

        anchors.verticalCenter: parent?.verticalCenter
        color: isLit ? Theme.legible(Theme.featureBalance, 0) : Theme.text3
        horizontalAlignment: Text.AlignLeft
        font.family: Theme.family
        font.pixelSize: 11
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }

    Side {
        x: 29 - width / 2
        text: "L"
        isLit: line.words.isLeftLit
    }
    ValueSlider {
        id: slider

        objectName: "balance"
        x: 50
        width: 212
        anchors.verticalCenter: parent.verticalCenter
        isMini: true
        isCentred: true
        minimumValue: -1
        maximumValue: 1
        stepSize: 0.05
        tint: Theme.featureBalance
        label: line.item.balanceLabel
        valueText: line.words.value
        modelValue: line.item.balance
        onEnded: line.item.setBalance(value)
    }
    Side {
        x: 275 - width / 2
        text: "R"
        isLit: line.words.isRightLit
    }
    ReadOut {
        x: 344 - width
        anchors.verticalCenter: parent.verticalCenter
        text: line.words.readOut
        color: Theme.text2
        font: Theme.smallReadOut
    }
}
