import QtQuick
import Orvanta

/// The panel's window. Goes when the user turns to something else.
Window {
    id: window

    required property MixerBridge mixer
    required property ShellBridge shell

    /// Whether it has the desktop's own frame, in which there are no corners of ours.
    property bool isFramed: true
    readonly property bool hasRoundCorners: CurrentTheme.hasCompositor && !isFramed

    width: 360
    height: 520
    title: "Orvanta"
    color: hasRoundCorners ? Theme.white(0) : Theme.window

    AudioMixerPopover {
        anchors.fill: parent
        focus: true
        hasRoundCorners: window.hasRoundCorners
        mixer: window.mixer
        shell: window.shell

        Keys.onEscapePressed: window.isFramed ? window.showMinimized() : window.hide()
    }
}
