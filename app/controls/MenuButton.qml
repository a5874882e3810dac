import QtQuick
import Orvanta

/// Shows what is chosen and opens the menu to choose from.
ButtonBase {
    id: button

    property bool isSmall: false
    required property Component menu
    /// Once it has been opened.
    readonly property PopupMenu openedMenu: lazy.made

    implicitHeight: isSmall ? 20 : 22
    help: name.truncated && !isExpanded ? text : ""
    hasMenu: true
    isExpandable: true
    isExpanded: lazy.isOpen
    Accessible.role: Accessible.ButtonMenu
    onClicked: lazy.openFor(button)

    LazyMenu {
        id: lazy

        menu: button.menu
    }
    ControlPlane {
        anchors.fill: parent
        radius: button.isSmall ? Theme.radiusSmall : Theme.radius
        isHovered: button.isHovered || lazy.isOpen
        isPressed: button.isDown

        FocusRing {
            control: parent
            radius: Theme.radius + 4
            isShown: button.visualFocus
        }
    }
    Text {
        id: name

        anchors.left: parent.left
        anchors.leftMargin: 9
        anchors.right: chevron.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        text: button.text
        color: button.isDown ? Theme.text2 : Theme.text1
        font: button.isSmall ? Theme.smallControl : Theme.controlText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        textFormat: Text.PlainText
        anchors.alignWhenCentered: false
        Accessible.ignored: true
    }
    SymbolGlyph {
        id: chevron

        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.up.chevron.down"
        size: 9
        color: Theme.text3
    }
}
