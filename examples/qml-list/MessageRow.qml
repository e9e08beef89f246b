// SPDX-License-Identifier: LGPL-2.1-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A message: title, channels and date. Texts of feeds are shown as plain text, so that they cannot load anything.
ItemDelegate {
    id: row

    required property int index
    required property string uri
    required property string title
    required property var channels
    required property var published
    required property bool isRead
    required property bool isFavorite

    readonly property color textColor: ListView.isCurrentItem ? palette.highlightedText : palette.text

    signal chosen()
    signal starred()

    height: 46
    padding: 0
    onClicked: chosen()
    background: RowBackground {
        isCurrent: row.ListView.isCurrentItem
        isHovered: row.hovered
        colors: row.palette
    }
    contentItem: RowLayout {
        spacing: 8

        Label {
            objectName: "star"
            Layout.leftMargin: 10
            text: row.isFavorite ? "★" : "☆"
            font.pixelSize: 18
            color: row.isFavorite && !row.ListView.isCurrentItem ? "#d89a00" : row.textColor
            opacity: row.isFavorite ? 1 : 0.4
            Accessible.role: Accessible.CheckBox
            Accessible.name: "Favorite"

            TapHandler { onTapped: row.starred() }
        }
        ColumnLayout {
            spacing: 1

            Label {
                Layout.fillWidth: true
                text: row.title
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.bold: !row.isRead
                color: row.textColor
            }
            Label {
                Layout.fillWidth: true
                text: row.channels ? row.channels.join(", ") : ""
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.pixelSize: 11
                color: row.textColor
                opacity: 0.65
            }
        }
        Label {
            Layout.rightMargin: 16
            // A message without a date has an invalid one.
            text: isNaN(row.published) ? "" : row.published.toLocaleDateString(Qt.locale(), Locale.ShortFormat)
            font.pixelSize: 11
            color: row.textColor
            opacity: 0.65
        }
    }
}
