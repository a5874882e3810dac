import QtQuick
import QtQuick.Templates as T
import Orvanta

/// What a control does, when the pointer rests on it. There only while it is asked for: a window has
/// many controls, and one pointer.
Loader {
    id: help

    property string text: ""
    property bool isAsked: false
    property int delay: 700

    active: isAsked && text !== ""
    sourceComponent: T.ToolTip {
        id: tip

        parent: help.parent
        text: help.text
        delay: help.delay
        visible: help.isAsked
        x: parent ? Math.round((parent.width - width) / 2) : 0
        y: -height - 6
        margins: 6
        padding: 6
        leftPadding: 8
        rightPadding: 8
        implicitWidth: Math.min(contentItem.implicitWidth + leftPadding + rightPadding,
                                (T.Overlay.overlay?.width ?? Infinity) - 2 * margins)
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        closePolicy: T.Popup.NoAutoClose

        contentItem: Text {
            text: tip.text
            color: Theme.text1
            horizontalAlignment: Text.AlignLeft
            font: Theme.smallControl
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }

        background: Rectangle {
            color: Theme.menu
            radius: Theme.radius
            border.color: Theme.line2
        }
    }
}
