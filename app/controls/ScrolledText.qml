import QtQuick
import Orvanta

/// Words of any length in a place of some height: what is more than that scrolls, by wheel and hand,
/// and by key, for which it is a stop only then.
AssistedItem {
    id: place

    property string text: ""
    property color color: Theme.text2
    property font font: Theme.detail
    readonly property real textHeight: words.implicitHeight
    readonly property bool isScrolled: view.contentHeight > view.height
    readonly property alias scrolledBy: view.contentY
    readonly property alias flickable: view

    function scroll(by: real) {
        view.contentY = Math.max(0, Math.min(view.contentY + by, view.contentHeight - view.height));
    }

    activeFocusOnTab: isScrolled
    // Other words begin at their beginning.
    onTextChanged: view.contentY = 0

    Keys.onUpPressed: scroll(-16)
    Keys.onDownPressed: scroll(16)
    Keys.onPressed: event => {
        event.accepted = true;
        if (event.key === Qt.Key_PageUp)
            scroll(-view.height);
        else if (event.key === Qt.Key_PageDown || event.key === Qt.Key_Space)
            scroll(view.height);
        else if (event.key === Qt.Key_Home)
            scroll(-view.contentHeight);
        else if (event.key === Qt.Key_End)
            scroll(view.contentHeight);
        else
            event.accepted = false;
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FocusRing {
        control: parent
        radius: Theme.radius
        isShown: place.visualFocus
    }
    Flickable {
        id: view

        anchors.fill: parent
        contentWidth: width
        contentHeight: words.implicitHeight
        interactive: place.isScrolled
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds

        Label {
            id: words

            // Of one width, whether there is a scroll bar beside it or not: which of both there is
            // follows from its height.
            width: view.width - 8
            text: place.text
            color: place.color
            font: place.font
            elide: Text.ElideNone
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
    ListScrollBar {
        view: place.flickable
    }
}
