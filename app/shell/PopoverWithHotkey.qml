import QtQuick
import Orvanta

/// The panel's window. Goes when the user turns to something else.
Window {
    id: window

    required property MixerBridge mixer
    required property ShellBridge shell

    /// In the desktop's own frame there are no corners of ours.
    readonly property bool hasRoundCorners: CurrentTheme.hasCompositor && (flags & Qt.FramelessWindowHint) !== 0

    width: 360
    height: 520
    title: "Orvanta"
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: hasRoundCorners ? Theme.white(0) : Theme.window

    AudioMixerPopover {
        anchors.fill: parent
        focus: true
        hasRoundCorners: window.hasRoundCorners
        mixer: window.mixer
        shell: window.shell

        Keys.onEscapePressed: window.hide()
    }
}
