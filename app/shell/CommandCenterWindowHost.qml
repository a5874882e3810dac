import QtQuick
import Orvanta

/// The console's window.
Window {
    id: window

    required property MixerBridge mixer
    required property ShellBridge shell

    title: "Sound Command Center"
    width: 960
    height: 640
    minimumWidth: 860
    minimumHeight: 568
    color: Theme.window

    WindowPlane {
        anchors.fill: parent
        radius: 0
        fade: 0.1
    }
    Label {
        x: 16
        y: 18
        text: window.title
        font: Theme.heading
        Accessible.role: Accessible.Heading
    }
}
