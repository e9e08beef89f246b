// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_SAVEDSEARCHES_H
#define TIDEL_DESKTOP_SAVEDSEARCHES_H

#include <TidelReader/channelmodel.h>

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QUndoStack)

namespace Tidel {

/// The searches that the user has saved. The settings of the program keep them.
class SavedSearches : public QObject
{
    Q_OBJECT

public:
    /// Reads the settings. What can be undone goes to \a undoStack.
    explicit SavedSearches(QUndoStack *undoStack, QObject *parent = nullptr);

    const QList<ChannelSearch> &all() const { return m_searches; }
    /// The search \a uri; one for nothing if there is none.
    ChannelSearch find(const QString &uri) const;
    /// Adds \a search under its words, unless it is there. Returns the URI of the search.
    QString add(ChannelSearch search);
    void rename(const QString &uri, const QString &title);
    /// Removes the search \a uri, which can be undone.
    void remove(const QString &uri);

Q_SIGNALS:
    void changed();

private:
    int indexOf(const QString &uri) const;
    void store();

    QUndoStack *const m_undoStack;
    QList<ChannelSearch> m_searches;
};

} // namespace Tidel

#endif
