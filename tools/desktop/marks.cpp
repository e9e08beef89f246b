// SPDX-License-Identifier: LGPL-2.1-or-later
#include "marks.h"

#include "answer.h"

#include <TidelReader/archive.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <QUndoCommand>
#include <QUndoStack>

namespace Tidel {

namespace {

constexpr int momentOfReading = 500; // In milliseconds.

/// Marks as read all messages of \a query, and returns those that were unread.
Result<QStringList> markAll(const Store &store, const MessageQuery &query)
{
    return MessageList(store).uris(query).and_then([&store](const UriList &list) {
        QStringList uris;
        for (int row = 0; row < list.size(); ++row)
            uris.append(list.at(row));
        return ReadState(store).set(uris, true).map([&uris](int) { return uris; });
    });
}

/// Messages that were marked as read. Nothing is done when it is pushed.
class MarkCommand : public QUndoCommand
{
public:
    MarkCommand(Marks *marks, const QStringList &uris)
        : QUndoCommand(Marks::tr("Marked %n message(s) as read", nullptr, int(uris.size()))
                       + QLatin1Char('\n')
                       + Marks::tr("Mark %n Message(s) as Read", nullptr, int(uris.size()))),
          m_marks(marks), m_uris(uris)
    {
    }

    void undo() override { m_marks->setRead(m_uris, false); }
    void redo() override
    {
        if (m_isPushed)
            m_marks->setRead(m_uris, true);
        m_isPushed = true;
    }

private:
    Marks *const m_marks;
    const QStringList m_uris;
    bool m_isPushed = false;
};

} // namespace

Marks::Marks(Archive *archive, QUndoStack *undoStack, QObject *parent)
    : QObject(parent), m_archive(archive), m_undoStack(undoStack)
{
    m_moment.setSingleShot(true);
    m_moment.setInterval(momentOfReading);
    connect(&m_moment, &QTimer::timeout, this, [this] { setRead({m_shown}, true); });
}

void Marks::setRead(const QStringList &uris, bool isRead)
{
    m_moment.stop();
    const auto set = [uris, isRead](const Store &store) { return ReadState(store).set(uris, isRead); };
    whenAnswered(m_archive->change(set), this, [this](const Result<int> &marked) {
        if (!marked)
            Q_EMIT failed(marked.error().text());
    });
}

void Marks::readSoon(const QString &uri)
{
    m_shown = uri;
    if (uri.isEmpty())
        m_moment.stop();
    else
        m_moment.start();
}

void Marks::readNow()
{
    if (m_moment.isActive())
        setRead({m_shown}, true);
}

void Marks::setAllRead(MessageQuery query)
{
    query.onlyUnread = true;
    const auto mark = [query](const Store &store) { return markAll(store, query); };
    whenAnswered(m_archive->change(mark), this, [this](const Result<QStringList> &marked) {
        if (!marked) {
            Q_EMIT failed(marked.error().text());
            return;
        }
        if (!marked->isEmpty())
            m_undoStack->push(new MarkCommand(this, *marked));
    });
}

void Marks::setFavorite(const QStringList &uris, bool isFavorite)
{
    const auto set = [uris, isFavorite](const Store &store) {
        Result<void> marked;
        for (const QString &uri : uris)
            marked = marked.and_then([&] { return Messages(store).setFavorite(uri, isFavorite); });
        return marked;
    };
    whenAnswered(m_archive->change(set), this, [this](const Result<void> &marked) {
        if (!marked)
            Q_EMIT failed(marked.error().text());
    });
}

} // namespace Tidel
