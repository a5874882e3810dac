import QtQuick
import Orvanta

/// The panel that people live in: what plays, how loud it is, and a way to everything else.
FocusScope {
    id: panel

    required property MixerBridge mixer
    required property ShellBridge shell
    property bool hasRoundCorners: true

    implicitWidth: 360
    implicitHeight: 520

    WindowPlane {
        anchors.fill: parent
        hasRoundCorners: panel.hasRoundCorners
        headerHeight: 76
        footerHeight: 40
    }
    PanelHeader {
        id: header

        width: parent.width
        mixer: panel.mixer
    }
    MasterRow {
        id: master

        y: 44
        width: parent.width
        mixer: panel.mixer
    }
    Rectangle {
        y: 76
        width: parent.width
        height: 1
        color: Theme.firstDivider
    }
    AppList {
        y: 77
        width: parent.width
        height: 365
        visible: !panel.mixer.isEmpty
        mixer: panel.mixer
    }
    EmptyList {
        y: 77
        width: parent.width
        height: 365
        visible: panel.mixer.isEmpty
    }
    PanelFooter {
        y: 442
        width: parent.width
        mixer: panel.mixer
    }
    StatusBar {
        y: 480
        width: parent.width
        mixer: panel.mixer
        shell: panel.shell
    }
}
