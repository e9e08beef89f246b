// SPDX-License-Identifier: LGPL-2.1-or-later
import QtQuick 2.15

// What lies behind a row: the colors of the palette say whether it is the current one, or under the pointer.
Rectangle {
    property bool isCurrent
    property bool isHovered
    property var colors

    color: isCurrent ? colors.highlight : colors.text
    opacity: isCurrent ? 1 : isHovered ? 0.08 : 0
}
