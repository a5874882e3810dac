import QtQuick
import Orvanta

/// What this is and which version, the theme, and two errands: updates and crash reports.
Item {
    id: view

    required property ShellBridge shell
    property bool showContent: false

    implicitWidth: 320
    implicitHeight: shell.hasCrashReports ? 432 : 402

    Component.onCompleted: {
        shell.lookForCrashReports();
        showContent = true;
    }

    Item {
        anchors.fill: parent
        opacity: view.showContent ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeIn
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Theme.easeInOut
            }
        }

        AboutIcon {
            x: (parent.width - width) / 2
            y: 36
        }
        GradientText {
            x: (parent.width - width) / 2
            y: 138
            height: 38
            text: "Orvanta"
            font: Theme.display
            startColor: Theme.legible(Theme.gradientStart, 0)
            endColor: Theme.legible(Theme.gradientEnd, 0)
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 178
            text: "Per-App Audio Mixer & Router"
            color: Theme.text2
            font: Theme.detail
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 198
            text: view.shell.longVersionText
            color: Theme.text2
            opacity: Theme.textOpacity(0.5)
            font: Theme.caption
        }
        Label {
            x: 36
            y: 232
            text: "THEME"
            color: Theme.text3
            font: Theme.section
        }
        Rectangle {
            x: 24
            y: 250
            width: 272
            height: 77
            radius: Theme.radiusCard
            color: Theme.withOpacity(Theme.menu, 0.5)
            border.color: Theme.line1

            Label {
                x: 12
                y: 0
                height: 40
                verticalAlignment: Text.AlignVCenter
                text: "Theme"
                font: Theme.body
            }
            Segmented {
                x: parent.width - width - 8
                y: 7
                label: "Theme"
                names: CurrentTheme.themeNames
                chosen: CurrentTheme.themeIndex
                onChose: index => CurrentTheme.themeIndex = index
            }
            Rectangle {
                x: 12
                y: 40
                width: parent.width - 24
                height: 1
                color: Theme.divider
            }
            Label {
                x: 12
                y: 41
                height: 36
                verticalAlignment: Text.AlignVCenter
                text: "Requires"
                color: Theme.text2
                font: Theme.detail
            }
            Label {
                anchors.right: parent.right
                anchors.rightMargin: 12
                y: 41
                height: 36
                verticalAlignment: Text.AlignVCenter
                text: "macOS Sonoma+"
                font: Theme.body
            }
        }
        CheckForUpdatesButton {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 344
            height: 24
            textFont: Theme.note
            symbolSize: 12
            shell: view.shell
        }
        CrashReportButton {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 371
            visible: view.shell.hasCrashReports
            onClicked: view.shell.sendCrashReport()
        }
    }
}
