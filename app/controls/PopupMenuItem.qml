import QtQuick
import QtQuick.Templates as T
import Orvanta

/// An entry of a menu: a place for its check mark, one for an emoji where the menu has them, and its
/// name. The first of a group has the group's heading above it.
T.MenuItem {
    id: entry

    property bool isChosen: false
    property string emoji: ""
    property string heading: ""

    readonly property int entryHeight: 26

    implicitWidth: name.x + name.implicitWidth + 14
    implicitHeight: entryHeight + headingText.height
    hoverEnabled: true
    opacity: enabled ? 1 : Theme.disabled

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: isChosen
    Accessible.onPressAction: { triggered(); menu.dismiss(); }

    HelpTip {
        text: entry.text
        isAsked: entry.hovered && name.truncated
    }

    onImplicitWidthChanged: {
        if (menu)
            (menu as PopupMenu).fit(entry);
    }
    onMenuChanged: {
        if (menu)
            (menu as PopupMenu).fit(entry);
    }

    contentItem: Item {
        Label {
            id: headingText

            x: 6
            visible: text !== ""
            height: visible ? 24 : 0
            verticalAlignment: Text.AlignVCenter
            text: entry.heading
            color: Theme.text3
            font: Theme.menuHeading
        }
        Row {
            id: row

            anchors.bottom: parent.bottom
            height: entry.entryHeight

            Item {
                width: 18
                height: parent.height

                SymbolGlyph {
                    anchors.centerIn: parent
                    visible: entry.isChosen
                    name: "checkmark"
                    size: 10
                    color: Theme.text1
                }
            }
            Text {
                width: entry.emoji === "" ? 0 : 24
                height: parent.height
                verticalAlignment: Text.AlignVCenter
                text: entry.emoji
                horizontalAlignment: Text.AlignLeft
                font.pixelSize: 12
                Accessible.ignored: true
            }
            Text {
                id: name

                width: entry.width - x - 14
                height: parent.height
                verticalAlignment: Text.AlignVCenter
                text: entry.text
                color: Theme.text1
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                font: Theme.body
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
        }
    }

    background: Item {
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: entry.entryHeight
            radius: Theme.radiusSmall
            color: entry.highlighted ? Theme.controlHover : Theme.white(0)
        }
    }
}
