// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef WINDOWTEST_H
#define WINDOWTEST_H

#include <articlepane.h>
#include <channelview.h>
#include <mainwindow.h>
#include <messageview.h>
#include <noticebar.h>

#include <readertest.h>

#include <TidelReader/archive.h>

#include <QTemporaryDir>

#include <memory>

/// The base of the tests of the window. Each test has a new store and new settings.
class WindowTestCase : public ReaderTestCase
{
    Q_OBJECT

protected:
    /// Opens a window, in place of the one that is open.
    void openWindow();
    /// Closes the window as the user does, and waits until its changes are stored.
    void closeWindow();

    Tidel::MainWindow *window() const { return m_window.get(); }
    Tidel::Archive *archive() const { return m_archive.get(); }
    Tidel::ChannelView *channels() const { return window()->findChild<Tidel::ChannelView *>(); }
    Tidel::MessageView *messages() const { return window()->findChild<Tidel::MessageView *>(); }
    Tidel::ArticlePane *article() const { return window()->findChild<Tidel::ArticlePane *>(); }
    Tidel::NoticeBar *notice() const { return window()->findChild<Tidel::NoticeBar *>(); }
    /// The open dialog of this type; null if there is none.
    template <typename Dialog> Dialog *dialog() const
    {
        auto *found = window()->findChild<Dialog *>();
        return found && found->isVisible() ? found : nullptr;
    }

    /// Presses the key of an action of the window.
    void press(const QKeySequence &keys) const;
    /// The titles of the rows of the tree, each after its depth in blanks.
    QStringList channelTitles() const;
    /// The titles of the messages that are listed.
    QStringList titles() const;
    /// The URI of the message that is shown.
    QString shown() const { return article()->message().uri; }
    QString shownText() const;
    bool isRead(const QString &message) const;

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<QTemporaryDir> m_settings;
    std::unique_ptr<Tidel::Archive> m_archive;
    std::unique_ptr<Tidel::MainWindow> m_window;
};

#endif
