// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_MARKS_H
#define TIDEL_DESKTOP_MARKS_H

#include <TidelReader/error.h>
#include <TidelReader/messagelist.h>

#include <QObject>
#include <QTimer>

QT_FORWARD_DECLARE_CLASS(QUndoStack)

namespace Tidel {

class Archive;

/// Marks messages as read or as favorites.
class Marks : public QObject
{
    Q_OBJECT

public:
    /// What can be undone goes to \a undoStack.
    Marks(Archive *archive, QUndoStack *undoStack, QObject *parent = nullptr);

    /// Marks \a uris as read or unread.
    void setRead(const QStringList &uris, bool isRead);
    /// Marks the message \a uri as read in a moment, unless this is called again before. Who only walks past
    /// messages does not read them.
    void readSoon(const QString &uri);
    /// Marks it now, because the user goes on.
    void readNow();
    /// Marks all messages of \a query as read, which can be undone.
    void setAllRead(MessageQuery query);
    void setFavorite(const QStringList &uris, bool isFavorite);

Q_SIGNALS:
    /// The archive could not be changed; \a text is for the user.
    void failed(const QString &text);

private:
    Archive *const m_archive;
    QUndoStack *const m_undoStack;
    QString m_shown; // The message that is read soon.
    QTimer m_moment;
};

} // namespace Tidel

#endif
