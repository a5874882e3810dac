import QtQuick
import Orvanta

/// The panel's window. Goes when the user turns to something else.
Window {
    id: window

    required property MixerBridge mixer
    required property ShellBridge shell

    width: 360
    height: 520
    title: "Orvanta"
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: CurrentTheme.hasCompositor ? Theme.white(0) : Theme.window

    AudioMixerPopover {
        anchors.fill: parent
        focus: true
        mixer: window.mixer
        shell: window.shell

        Keys.onEscapePressed: window.hide()
    }
}
