// SPDX-License-Identifier: LGPL-2.1-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQml.Models 2.15
import Tidel 1.0

// The rows of a folder, each with the rows of its own folder below it.
Column {
    id: rows

    property ChannelModel channels
    property var folder // A model index; the top if it is undefined.
    property int depth: 0
    property var tree: rows // Has the current row of the whole tree.
    property string current

    signal chosen(var index)

    Repeater {
        model: DelegateModel {
            id: rowModel
            model: rows.channels
            rootIndex: rows.folder
            delegate: Column {
                id: entry

                readonly property bool isFolder: model.kind === ChannelModel.FolderKind
                // Stays the same when rows move.
                readonly property string name: model.kind + " " + (isFolder ? model.folder : model.uri)
                property bool isOpen: true

                width: rows.width

                ItemDelegate {
                    id: row

                    readonly property bool isCurrent: rows.tree.current === entry.name

                    width: parent.width
                    height: 30
                    padding: 0
                    ToolTip.visible: hovered && model.error !== ""
                    ToolTip.text: model.error
                    onClicked: {
                        rows.tree.current = entry.name
                        rows.tree.chosen(rowModel.modelIndex(index))
                    }
                    background: RowBackground {
                        isCurrent: row.isCurrent
                        isHovered: row.hovered
                        colors: row.palette
                    }
                    contentItem: RowLayout {
                        spacing: 4

                        Label {
                            Layout.leftMargin: 8 + 16 * rows.depth
                            Layout.preferredWidth: 12
                            text: !entry.isFolder ? "" : entry.isOpen ? "▾" : "▸"
                            color: title.color

                            TapHandler {
                                enabled: entry.isFolder
                                onTapped: entry.isOpen = !entry.isOpen
                            }
                        }
                        Label {
                            id: title
                            Layout.fillWidth: true
                            text: model.title
                            textFormat: Text.PlainText
                            elide: Text.ElideRight
                            font.bold: model.unread > 0
                            color: row.isCurrent ? row.palette.highlightedText : row.palette.text
                        }
                        Label {
                            visible: model.error !== ""
                            text: "!"
                            font.bold: true
                            color: row.isCurrent ? title.color : "#d04040"
                        }
                        Label {
                            Layout.rightMargin: 10
                            visible: model.unread > 0
                            text: model.unread
                            color: title.color
                            opacity: 0.75
                        }
                    }
                }
                Loader {
                    width: parent.width
                    visible: entry.isOpen
                    height: visible && item ? item.implicitHeight : 0
                    source: entry.isFolder ? "ChannelRows.qml" : ""
                    onLoaded: {
                        item.width = Qt.binding(function() { return entry.width })
                        item.tree = rows.tree
                        item.depth = rows.depth + 1
                        item.folder = rowModel.modelIndex(index)
                        item.channels = rows.channels
                    }
                }
            }
        }
    }
}
