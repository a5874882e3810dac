import QtQuick
import Orvanta

SmallWindow {
    id: window

    required property ShellBridge shell

    title: "Welcome to Orvanta"
    width: view.implicitWidth
    height: view.implicitHeight

    OnboardingView {
        id: view

        objectName: "onboarding"

        anchors.fill: parent
        focus: true
        shell: window.shell
        onDismissed: window.close()
    }
}
