// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_MESSAGEPANE_H
#define TIDEL_DESKTOP_MESSAGEPANE_H

#include "messageview.h"

#include <QTimer>
#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QAction)
QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QLineEdit)

namespace Tidel {

/// A list of messages, and a line to search them as the user types.
class MessagePane : public QWidget
{
    Q_OBJECT

public:
    explicit MessagePane(Archive *archive, QWidget *parent = nullptr);

    MessageView *view() const { return m_view; }

    /// Shows the messages of \a query, which are called \a title, and ends the search.
    void show(const MessageQuery &query, const QString &title);
    /// Says \a hint where a list has no messages; "No messages" if it is empty.
    void setHint(const QString &hint);
    /// Shows \a save in the line for words as long as there are some, and enables it then.
    void setSaveAction(QAction *save);
    /// Lets the user type words.
    void startSearch();
    /// Shows all messages again if the user is searching. Returns false if not.
    bool endSearch();
    /// All that is searched for: the words of the query that is shown, and those that the user has typed.
    QString words() const;

private:
    void search();
    QString emptyText() const;
    void showState();

    QLineEdit *const m_words;
    MessageView *const m_view;
    QLabel *const m_state; // Why the list is empty.
    QString m_hint;
    QTimer m_typing; // Runs while the user types.
    MessageQuery m_query; // Without what the user types.
};

} // namespace Tidel

#endif
