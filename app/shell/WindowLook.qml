pragma Singleton

import QtQuick

/// What windows may look like on this desktop: without a compositor there is nothing behind a
/// corner.
QtObject {
    property bool hasRoundCorners: false
}
