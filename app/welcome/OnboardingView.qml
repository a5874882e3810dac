import QtQuick
import Orvanta

/// Three pages of welcome. Only their end counts as having been through them.
FocusScope {
    id: view

    required property ShellBridge shell
    property int currentPage: 0
    readonly property int pageCount: 3

    signal dismissed()

    function placeOf(page: int): real {
        return page * width;
    }

    /// Whether any of a page that begins there is. What is not is neither for the keyboard nor for
    /// assistive tools.
    function isInSight(start: real): bool {
        return Math.abs(start) < width;
    }

    implicitWidth: 460
    implicitHeight: 520
    clip: true

    Item {
        id: strip

        x: -view.currentPage * view.width

        Behavior on x { SpringMove {} }

        WelcomePage {
            x: view.placeOf(0)
            width: view.width
            height: 440
            visible: view.isInSight(x + strip.x)
        }
        HowItWorksPage {
            x: view.placeOf(1)
            width: view.width
            height: 440
            visible: view.isInSight(x + strip.x)
        }
        ReadyPage {
            x: view.placeOf(2)
            width: view.width
            height: 440
            visible: view.isInSight(x + strip.x)
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
