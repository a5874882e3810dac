pragma Singleton

import QtQuick
import Orvanta

/// Every token of the design, once. Neutrals are the same in all themes; the palette's colours move
/// together when the theme changes. Sizes are logical pixels.
QtObject {
    id: theme

    // Backgrounds, from the darkest plane up.
    readonly property color well: "#0A0B0E"
    readonly property color window: "#101115"
    readonly property color pane: "#16181D"
    readonly property color surface: "#1C1E24"
    readonly property color surfaceTop: "#202229"
    readonly property color surfaceBottom: "#1A1C21"
    readonly property color menu: "#22242B"
    readonly property color control: "#2A2D35"
    readonly property color controlHover: "#343842"
    readonly property color controlPressed: "#23262D"
    /// Under the panel's header, where a breath of the accent lies over it.
    readonly property color headerTop: mix("#181A1F", accent, 0.07)
    readonly property color status: "#0D0E12"

    /// Behind the panel's footer, above the status bar.
    readonly property color footer: "#121318"

    // What the hand moves, from its lit top down. A fader of the equaliser that does nothing is grey.
    readonly property color capTop: "#FFFFFF"
    readonly property color capWaist: "#E9EBEF"
    readonly property color capBottom: "#B9BDC7"
    readonly property color capFlat: "#7C818D"

    // Lines.
    readonly property color line1: white(CurrentTheme.isHighContrast ? 0.28 : 0.06)
    readonly property color line2: white(CurrentTheme.isHighContrast ? 0.45 : 0.10)
    readonly property color line3: white(CurrentTheme.isHighContrast ? 0.70 : 0.17)
    readonly property color highlight: white(0.05)
    readonly property color lip: white(0.055)
    /// A mark on a scale, or where one of many stands.
    readonly property color mark: white(CurrentTheme.isHighContrast ? 0.70 : 0.22)
    /// Of a drawing, the second where its scale has its zero.
    readonly property color grid: white(CurrentTheme.isHighContrast ? 0.28 : 0.05)
    readonly property color gridZero: white(CurrentTheme.isHighContrast ? 0.45 : 0.15)
    readonly property color divider: white(0.075)
    readonly property color firstDivider: white(0.09)
    readonly property color rowHover: white(0.045)
    readonly property color symbolHover: white(0.08)

    // Text.
    readonly property color text1: "#F2F3F5"
    readonly property color text2: CurrentTheme.isHighContrast ? "#D5D8DF" : "#B0B4BE"
    readonly property color text3: CurrentTheme.isHighContrast ? "#BFC3CC" : "#8A8F9B"
    readonly property color text4: CurrentTheme.isHighContrast ? "#8A8F9B" : "#5C616D"
    readonly property color ink: "#0E0F12"
    readonly property color accentText: legible(accentSecondary, 0)
    readonly property color redText: legible(red, 0.30)
    /// Under white words.
    readonly property color redPlane: CurrentTheme.isHighContrast ? mix(red, "#000000", 0.15) : red

    // The palette.
    property color accent: CurrentTheme.colors.accent
    property color accentSecondary: CurrentTheme.colors.accentSecondary
    property color accentGlow: CurrentTheme.colors.accentGlow
    property color boostAmber: CurrentTheme.colors.boostAmber
    property color warmOrange: CurrentTheme.colors.warmOrange
    property color gradientStart: CurrentTheme.colors.gradientStart
    property color gradientEnd: CurrentTheme.colors.gradientEnd
    readonly property color green: CurrentTheme.colors.green
    readonly property color yellow: CurrentTheme.colors.yellow
    readonly property color red: CurrentTheme.colors.red
    readonly property color blue: CurrentTheme.colors.blue
    readonly property color purple: CurrentTheme.colors.purple
    property color featureVolume: CurrentTheme.colors.featureVolume
    property color featureRouting: CurrentTheme.colors.featureRouting
    property color featureEQ: CurrentTheme.colors.featureEQ
    property color featureCompressor: CurrentTheme.colors.featureCompressor
    property color featureRecording: CurrentTheme.colors.featureRecording
    property color featureBalance: CurrentTheme.colors.featureBalance
    property color featureShortcuts: CurrentTheme.colors.featureShortcuts

    /// How a colour goes over into the other theme's.
    component PaletteChange: ColorAnimation {
        duration: CurrentTheme.isMotionReduced ? 0 : 250
        easing.type: Easing.BezierSpline
        easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
    }

    Behavior on accent { PaletteChange {} }
    Behavior on accentSecondary { PaletteChange {} }
    Behavior on accentGlow { PaletteChange {} }
    Behavior on boostAmber { PaletteChange {} }
    Behavior on warmOrange { PaletteChange {} }
    Behavior on gradientStart { PaletteChange {} }
    Behavior on gradientEnd { PaletteChange {} }
    Behavior on featureVolume { PaletteChange {} }
    Behavior on featureRouting { PaletteChange {} }
    Behavior on featureEQ { PaletteChange {} }
    Behavior on featureCompressor { PaletteChange {} }
    Behavior on featureRecording { PaletteChange {} }
    Behavior on featureBalance { PaletteChange {} }
    Behavior on featureShortcuts { PaletteChange {} }

    // Corners.
    readonly property int radiusTrack: 2
    readonly property int radiusCap: 4
    readonly property int radiusSmall: 5
    readonly property int radius: 6
    readonly property int radiusTile: 8
    readonly property int radiusPrimary: 9
    readonly property int radiusCard: 10
    readonly property int radiusWindow: 12

    readonly property int focusWidth: CurrentTheme.isHighContrast ? 3 : 2
    readonly property real disabled: 0.38

    // Motion, in ms. Meters are information and go on when the desktop wants less of it.
    readonly property bool isMoving: !CurrentTheme.isMotionReduced
    readonly property int hover: isMoving ? 150 : 0
    readonly property int spring: isMoving ? 260 : 0
    readonly property int pulse: 800
    readonly property int fadeIn: isMoving ? 300 : 0
    readonly property int iconHover: isMoving ? 200 : 0
    readonly property list<real> easeInOut: [0.42, 0, 0.58, 1, 1, 1]
    /// Within 1.3 % of a spring of response 0.3 and damping fraction 0.825.
    readonly property list<real> springCurve: [0.25, 0.15, 0.25, 1.05, 1, 1]

    // Type.
    readonly property string family: "Orvanta Text"
    readonly property string figures: "Orvanta Figures"
    readonly property string symbols: "Framework7 Icons"
    readonly property font display: Qt.font({ family: family, pixelSize: 26, weight: Font.Bold, letterSpacing: -0.6 })
    readonly property font title: Qt.font({ family: family, pixelSize: 24, weight: Font.Bold, letterSpacing: -0.5 })
    readonly property font header: Qt.font({ family: family, pixelSize: 14, weight: Font.DemiBold, letterSpacing: -0.15 })
    readonly property font heading: Qt.font({ family: family, pixelSize: 13, weight: Font.DemiBold, letterSpacing: -0.1 })
    readonly property font rowTitle: Qt.font({ family: family, pixelSize: 13, weight: Font.Medium })
    readonly property font subtitle: Qt.font({ family: family, pixelSize: 13 })
    readonly property font detail: Qt.font({ family: family, pixelSize: 12 })
    readonly property font note: Qt.font({ family: family, pixelSize: 11 })
    readonly property font body: Qt.font({ family: family, pixelSize: 12, weight: Font.Medium })
    readonly property font controlText: Qt.font({ family: family, pixelSize: 11, weight: Font.Medium })
    readonly property font smallControl: Qt.font({ family: family, pixelSize: 10, weight: Font.Medium })
    readonly property font caption: Qt.font({ family: family, pixelSize: 10 })
    readonly property font section: Qt.font({ family: family, pixelSize: 10, weight: Font.Bold, letterSpacing: 1.0 })
    readonly property font menuHeading: Qt.font({ family: family, pixelSize: 10, weight: Font.DemiBold })
    readonly property font badge: Qt.font({ family: family, pixelSize: 9, weight: Font.DemiBold })
    readonly property font micro: Qt.font({ family: figures, pixelSize: 8, weight: Font.Medium })
    readonly property font dragReadOut: Qt.font({ family: figures, pixelSize: 7, weight: Font.DemiBold })
    readonly property font meterScale: Qt.font({ family: "monospace", pixelSize: 6, weight: Font.Medium })
    readonly property font readOut: Qt.font({ family: figures, pixelSize: 11, weight: Font.Medium })
    readonly property font litReadOut: Qt.font({ family: figures, pixelSize: 10, weight: Font.DemiBold })
    readonly property font smallReadOut: Qt.font({ family: figures, pixelSize: 10, weight: Font.Medium })

    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity);
    }

    function black(opacity: real): color {
        return Qt.rgba(0, 0, 0, opacity);
    }

    function withOpacity(color: color, opacity: real): color {
        return Qt.alpha(color, opacity);
    }

    /// `share` of `other` over `base`.
    function mix(base: color, other: color, share: real): color {
        return Qt.tint(base, Qt.alpha(other, share));
    }

    /// A colour that means something, as symbols and words wear it: `share` of white in it at rest,
    /// and enough of it where the desktop asks for contrast.
    function legible(color: color, share: real): color {
        return mix(color, "#FFFFFF", CurrentTheme.isHighContrast ? Math.max(share, 0.4) : share);
    }

    /// Of a feature, bright enough for a control's plane.
    function symbolOnControl(feature: color): color {
        return legible(feature, 0.2);
    }

    /// An opacity that is stated for rest, as high contrast has it.
    function textOpacity(opacity: real): real {
        return CurrentTheme.isHighContrast ? Math.max(opacity, 0.8) : opacity;
    }
}
