import QtQuick
import Orvanta

SmallWindow {
    id: window

    required property ShellBridge shell

    title: "About Orvanta"
    width: view.implicitWidth
    height: view.implicitHeight

    AboutView {
        id: view

        anchors.fill: parent
        shell: window.shell
    }
}
