import QtQuick
import QtQuick.Templates as T
import Orvanta

/// A menu over the window it belongs to. As wide as its longest entry, but no wider than the window,
/// and scrolls when it is higher.
T.Menu {
    id: menu

    property real widest: 0

    padding: 5
    margins: 6
    implicitWidth: Math.min(Math.max(widest, 120) + leftPadding + rightPadding,
                            (T.Overlay.overlay?.width ?? Infinity) - 2 * margins)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    /// What it belongs to may go while it is open.
    readonly property bool isHeldUp: parent !== null && parent.visible

    function openFor(button: Item) {
        parent = button;
        widest = 0;
        for (let index = 0; index < count; ++index)
            fit(itemAt(index));
        popup(button, button.width - width, button.height + 2);
    }

    function fit(entry: Item) {
        widest = Math.max(widest, entry.implicitWidth);
    }

    onIsHeldUpChanged: {
        if (!isHeldUp)
            close();
    }
    // The toolkit would give it to the window, where the next key is lost.
    onClosed: {
        if (isHeldUp)
            parent.forceActiveFocus(Qt.PopupFocusReason);
    }
    onCurrentIndexChanged: {
        if (currentIndex >= 0)
            entries.positionViewAtIndex(currentIndex, ListView.Contain);
    }

    contentItem: ListView {
        id: entries

        implicitHeight: contentHeight
        model: menu.contentModel
        currentIndex: -1
        interactive: contentHeight > height
        clip: interactive
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
    }

    background: Item {
        BorderImage {
            anchors.fill: parent
            anchors.margins: -32
            anchors.topMargin: -20
            anchors.bottomMargin: -44
            source: "image://shadow/32/10/0.55"
            border { left: 44; right: 44; top: 44; bottom: 44 }
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusCard
            color: Theme.menu
            border.color: Theme.line2
        }
    }
}
