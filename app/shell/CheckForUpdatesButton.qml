import QtQuick
import Orvanta

/// Looks for a newer version, where there is a place to look.
PlainButton {
    id: button

    required property ShellBridge shell

    objectName: "checkForUpdates"
    enabled: shell.canCheckForUpdates
    text: "Check for Updates"
    label: "Check for updates"
    symbol: "arrow.triangle.2.circlepath"
    spacing: 4
    restOpacity: 0.5
    onClicked: shell.checkForUpdates()
}
