// SPDX-License-Identifier: LGPL-2.1-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Tidel 1.0

ApplicationWindow {
    id: window

    property string problem

    width: 1000
    height: 640
    visible: true
    title: "Tidel"
    color: palette.base

    Archive {
        id: feedArchive
        onFailed: function(text) { window.problem = text }
        onDownloadFailed: function(subject, reason) {
            const channel = channelModel.indexOf(subject)
            const name = channel.valid ? channelModel.data(channel, ChannelModel.TitleRole) : subject
            window.problem = name === "" ? reason : name + ": " + reason
        }
        onFeedsFound: function(address, feeds) {
            window.problem = address + " has " + feeds.length + " feeds; subscribe to one of them: "
                + feeds.map(function(feed) { return feed.address }).join(" ")
        }
    }

    ChannelModel {
        id: channelModel
        archive: feedArchive
        showsLists: true
    }

    MessageModel {
        id: messageModel
        archive: feedArchive
        query: channelModel.query()
    }

    header: ToolBar {
        height: addressField.implicitHeight + 12

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            spacing: 8

            TextField {
                id: addressField
                Layout.fillWidth: true
                placeholderText: "Address of a feed"
                selectByMouse: true
                onAccepted: {
                    if (text === "")
                        return
                    window.problem = ""
                    feedArchive.subscribe(text)
                    clear()
                }
            }
            Button {
                text: "Subscribe"
                enabled: addressField.text !== ""
                onClicked: addressField.accepted()
            }
            ToolSeparator { }
            Button {
                text: feedArchive.downloading ? "Cancel" : "Refresh"
                onClicked: {
                    window.problem = ""
                    if (feedArchive.downloading)
                        feedArchive.cancelDownloads()
                    else
                        feedArchive.refresh()
                }
            }
        }
    }

    SplitView {
        anchors.fill: parent

        ScrollView {
            id: channelPane
            SplitView.preferredWidth: 280
            SplitView.minimumWidth: 160
            contentWidth: availableWidth
            clip: true

            ChannelRows {
                width: channelPane.availableWidth
                channels: channelModel
                onChosen: function(index) { messageModel.query = channelModel.query(index) }
            }
        }

        ListView {
            id: messageList
            objectName: "messages"
            SplitView.fillWidth: true
            clip: true
            focus: true
            model: messageModel
            currentIndex: -1
            boundsBehavior: Flickable.StopAtBounds
            // All rows have one height, so that none needs to be made to know where another one is.
            reuseItems: true
            ScrollBar.vertical: ScrollBar { }
            delegate: MessageRow {
                width: messageList.width
                onChosen: {
                    messageList.currentIndex = index
                    feedArchive.setRead([uri], true)
                }
                onStarred: feedArchive.setFavorite(uri, !isFavorite)
            }

            Label {
                anchors.centerIn: parent
                width: parent.width - 32
                visible: messageList.count === 0 && !messageModel.loading
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                opacity: 0.7
                text: messageModel.errorText || "No messages"
            }
        }
    }

    footer: ToolBar {
        visible: feedArchive.downloading || window.problem !== "" || channelModel.errorText !== ""

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8

            Label {
                Layout.fillWidth: true
                text: window.problem || channelModel.errorText
                textFormat: Text.PlainText
                elide: Text.ElideRight
            }
            ProgressBar {
                objectName: "busy"
                visible: feedArchive.downloading
                value: feedArchive.progress
            }
        }
    }

    Component.onCompleted: {
        for (const address of Qt.application.arguments.slice(1))
            feedArchive.subscribe(address)
    }
}
