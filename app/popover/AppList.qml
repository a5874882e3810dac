import QtQuick
import Orvanta

/// The applications, section by section.
ListView {
    id: list

    required property MixerBridge mixer

    clip: true
    model: mixer.apps
    /// What has the keyboard in the window.
    readonly property Item focusItem: Window.activeFocusItem
    // Rows that are tapped are high: without a tap there is room to breathe.
    readonly property int gap: mixer.hasTaps ? 0 : 4

    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 200
    reuseItems: true
    section.property: "section"
    section.delegate: SectionHeader {
        required property string section

        width: list.width
        title: section
        count: list.mixer.apps.sectionCounts[section] ?? 0
        gap: list.gap
    }
    delegate: AppVolumeRow {
        required property AppItem app
        required property int index

        width: list.width
        gap: app.isTapped && ListView.previousSection === ListView.section ? 6 : 0
        mixer: list.mixer
        item: app
    }

    // Once it is known whether the keyboard came by a key; a mouse points at what is in sight.
    onFocusItemChanged: Qt.callLater(list.revealFocus)

    function revealFocus() {
        let inside = focusItem;
        while (inside !== null && inside !== contentItem)
            inside = inside.parent;
        if (inside === null || !focusItem.visualFocus)
            return;
        const margin = 20;
        const top = focusItem.mapToItem(contentItem, 0, 0).y - margin;
        const bottom = top + focusItem.height + 2 * margin;
        const wanted = Math.min(top, Math.max(contentY, bottom - height));
        contentY = Math.max(originY, Math.min(wanted, originY + contentHeight - height));
    }

    Rectangle {
        anchors.bottom: parent.bottom
        parent: list
        width: list.width
        height: 14
        visible: !list.atYEnd
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.withOpacity(Theme.window, 0) }
            GradientStop { position: 1; color: Theme.window }
        }
    }
    ListScrollBar {
        parent: list
        view: list
    }
}
