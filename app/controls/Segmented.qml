import QtQuick
import Orvanta

/// One of a few, side by side in a well. Arrows go to the neighbour.
Rectangle {
    id: picker

    property var names: []
    property int chosen: 0
    property string label: ""

    signal chose(int index)

    /// By key: the keyboard goes along.
    function go(index: int) {
        if (index < 0 || index >= names.length)
            return;
        chose(index);
        segments.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: row.implicitWidth + 4
    implicitHeight: 26
    radius: 7
    color: Theme.well
    border.color: Theme.line1
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Row {
        id: row

        x: 2
        y: 2

        Repeater {
            id: segments

            model: picker.names

            ButtonBase {
                id: segment

                required property int index
                required property string modelData
                readonly property bool isChosen: index === picker.chosen

                objectName: "segment" + index
                text: modelData
                implicitWidth: content.implicitWidth + 24
                implicitHeight: 22
                Accessible.role: Accessible.RadioButton
                Accessible.checkable: true
                Accessible.checked: isChosen
                Keys.onLeftPressed: picker.go(picker.chosen - 1)
                Keys.onRightPressed: picker.go(picker.chosen + 1)
                onClicked: picker.chose(index)

                Rectangle {
                    anchors.fill: parent
                    radius: Theme.radiusSmall
                    color: segment.isChosen ? Theme.controlHover : Theme.white(0)

                    FocusRing {
                        control: parent
                        radius: Theme.radiusSmall + 4
                        isShown: segment.visualFocus
                    }
                }
                Text {
                    id: content

                    anchors.fill: parent
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: segment.text
                    color: segment.isChosen ? Theme.accentText
                                            : segment.isHovered ? Theme.text1 : Theme.text2
                    font.family: Theme.family
                    font.pixelSize: 11
                    font.weight: segment.isChosen ? Font.DemiBold : Font.Medium
                    Accessible.ignored: true
                }
            }
        }
    }
}
