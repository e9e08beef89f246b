// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ARTICLEVIEW_H
#define TIDEL_DESKTOP_ARTICLEVIEW_H

#include "picturepermissions.h"
#include "shownmessage.h"

#include <QWidget>

namespace Tidel {

class ArticleBrowser;
class PictureBar;

/**
 * Shows a message, with pictures if the user has allowed them, and its enclosures. Nothing that a feed
 * contains makes it ask a server, except for allowed pictures.
 */
class ArticleView : public QWidget
{
    Q_OBJECT

public:
    explicit ArticleView(QWidget *parent = nullptr);

    /// Shows \a message. The place in the text is kept if it was shown already.
    void show(const ShownMessage &message);
    /// Lays the beginning of \a message out, but does not show it.
    void rehearse(ShownMessage message) const;
    /// Shows nothing.
    void clear();
    /// What is shown; it has no URI if there is nothing.
    const ShownMessage &message() const { return m_shown; }
    /// Scrolls by a page. Returns false if the end was reached before; otherwise returns true.
    bool readOn();

    /// The actions for a menu: larger, smaller and usual text, and pictures of the channel.
    QList<QAction *> viewActions() const { return actions(); }

Q_SIGNALS:
    /// The user follows \a link, which is http, https or mailto.
    void linkActivated(const QUrl &link);
    /// The pointer or the cursor is on \a link; it is empty if it is on none.
    void linkHovered(const QUrl &link);
    /// The user wants to read on, but the end is shown.
    void endReached();
    /// The user wants to download the enclosure \a uri.
    void downloadRequested(const QString &uri);
    /// The user wants to open the file of the enclosure \a uri.
    void openRequested(const QString &uri);

private:
    void addActions();
    /// Adds an action that changes the size of the text by \a points; 0 restores it.
    void addZoom(const QString &text, const QList<QKeySequence> &keys, int points);
    void render();
    void activate(const QUrl &link);
    void allowOnce();
    void setAllowedForChannel(bool isAllowed);

    ArticleBrowser *const m_browser;
    PictureBar *const m_pictureBar;
    QAction *m_channelPictures = nullptr;
    PicturePermissions m_permissions;
    ShownMessage m_shown;
};

} // namespace Tidel

#endif
