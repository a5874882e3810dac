import QtQuick
import Orvanta

/// The applications, section by section.
Item {
    id: place

    required property MixerBridge mixer

    // Not the view itself, which has the keyboard together with the control that has it.
    Accessible.role: Accessible.List
    Accessible.name: "Applications"

    // Not this file's root: a root has its own `section`, which the toolkit would take for that of a
    // header when a row changes its section in place.
    ListView {
        id: list

        // Rows that are tapped are high: without a tap there is room to breathe.
        readonly property int gap: place.mixer.hasTaps ? 0 : 4

        objectName: "apps"
        anchors.fill: parent
        clip: true
        model: place.mixer.apps
        boundsBehavior: Flickable.StopAtBounds
        // What the keyboard brings into view must be there; what is beyond it only costs every frame.
        cacheBuffer: 48
        reuseItems: true
        section.property: "section"
        section.delegate: SectionHeader {
            required property string section

            width: list.width
            title: section
            count: place.mixer.apps.sectionCounts[section] ?? 0
            gap: list.gap
        }
        delegate: AppVolumeRow {
            required property AppItem app
            required property int index

            width: list.width
            gap: app.isTapped && ListView.previousSection === ListView.section ? 6 : 0
            mixer: place.mixer
            item: app
            // Until it is used again, the keyboard is not to come to it.
            ListView.onPooled: {
                visible = false;
                isUnfolding = false;
            }
            ListView.onReused: visible = true
            onYChanged: Qt.callLater(list.sort)
        }

        function sort() {
            ReadingOrder.sort(contentItem);
        }

        /// What the keyboard comes to is brought into view, with a bit of its neighbour, which is
        /// there then to go to. What the mouse has pressed is in sight, and stays under it.
        function followFocus() {
            const item = Window.activeFocusItem;
            for (let above = item; above !== contentItem; above = above.parent)
                if (above === null)
                    return;
            if (!item.visualFocus)
                return;
            const around = 40;
            const top = item.mapToItem(list, 0, 0).y - around;
            const bottom = top + item.height + 2 * around;
            if (top < 0)
                contentY = Math.max(originY, contentY + top);
            else if (bottom > height)
                contentY = Math.min(originY + contentHeight - height, contentY + bottom - height);
        }

        Connections {
            target: list.Window.window
            function onActiveFocusItemChanged() {
                // Once it is known whether it came by a key.
                Qt.callLater(list.followFocus);
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 14
        visible: !list.atYEnd
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.withOpacity(Theme.window, 0) }
            GradientStop { position: 1; color: Theme.window }
        }
    }
    ListScrollBar {
        view: list
    }
}
