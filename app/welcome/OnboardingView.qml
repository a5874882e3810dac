import QtQuick
import Orvanta

/// Three pages of welcome. Only their end counts as having been through them.
FocusScope {
    id: view

    required property ShellBridge shell
    property int currentPage: 0
    readonly property int pageCount: 3

    signal dismissed()

    implicitWidth: 460
    implicitHeight: 520
    clip: true

    Row {
        x: -view.currentPage * view.width

        Behavior on x { SpringMove {} }

        WelcomePage {
            width: view.width
            height: 440
            enabled: view.currentPage === 0
        }
        HowItWorksPage {
            width: view.width
            height: 440
            enabled: view.currentPage === 1
        }
        ReadyPage {
            width: view.width
            height: 440
            enabled: view.currentPage === 2
        }
    }
    PageDots {
        x: 32
        anchors.verticalCenter: next.verticalCenter
        count: view.pageCount
        current: view.currentPage
    }
    PrimaryButton {
        id: next

        readonly property bool isLast: view.currentPage === view.pageCount - 1

        objectName: "next"
        x: view.width - width - 32
        y: view.height - height - 28
        focus: true
        text: isLast ? "Get Started" : "Next"
        leadingSymbol: isLast ? "checkmark.circle.fill" : ""
        trailingSymbol: isLast ? "" : "arrow.right"
        onClicked: {
            if (!isLast) {
                view.currentPage += 1;
                return;
            }
            view.shell.completeOnboarding();
            view.dismissed();
        }
    }
}
