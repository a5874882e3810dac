import QtQuick
import Orvanta

/// A window that is as large as what it shows, draws its own frame, moves by its plane and has
/// nothing to press but a cross.
Window {
    id: window

    default property alias content: place.data

    flags: Qt.Window | Qt.FramelessWindowHint
    color: CurrentTheme.hasCompositor ? Theme.white(0) : Theme.window
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    WindowPlane {
        anchors.fill: parent
        fade: 0.55
    }
    MouseArea {
        anchors.fill: parent
        onPressed: window.startSystemMove()
    }
    FocusScope {
        id: place

        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: window.close()
    }
    IconButton {
        x: parent.width - width - 8
        y: 8
        symbol: "xmark"
        size: 10
        label: "Close"
        help: "Close"
        onClicked: window.close()
    }
}
