// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageview.h"

#include "answer.h"
#include "messagecolumns.h"

#include <TidelReader/archive.h>

#include <QDate>
#include <QHeaderView>
#include <QLocale>

namespace Tidel {

namespace {

/// The unread message of \a query that comes after \a current, or the first one; empty if there is none.
Result<QString> nextUnreadMessage(const Store &store, MessageQuery query, const QString &current)
{
    query.onlyUnread = true;
    UriList kept;
    if (!current.isEmpty())
        kept.append(current);
    return MessageList(store).uris(query, kept).map([&current](const UriList &uris) {
        const int next = uris.indexOf(current) + 1;
        if (next < uris.size())
            return uris.at(next);
        return uris.isEmpty() || uris.at(0) == current ? QString() : uris.at(0);
    });
}

// The column of channels, in characters.
constexpr int narrowest = 16;
constexpr int widest = 30;

} // namespace

MessageView::MessageView(Archive *archive, QWidget *parent)
    : QTreeView(parent), m_archive(archive), m_messages(new MessageModel(archive, this)),
      m_columns(new MessageColumns(this)), m_channelWidth(fontMetrics().averageCharWidth() * narrowest)
{
    m_columns->setSourceModel(m_messages);
    setModel(m_columns);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setItemsExpandable(false);
    setAlternatingRowColors(true);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setAccessibleName(tr("Messages"));
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(24);
    header()->setSectionResizeMode(MessageColumns::TitleColumn, QHeaderView::Stretch);
    for (const int column : {MessageColumns::ReadColumn, MessageColumns::FavoriteColumn}) {
        header()->setSectionResizeMode(column, QHeaderView::Fixed);
        header()->resizeSection(column, 28);
    }
    header()->resizeSection(MessageColumns::ChannelColumn, m_channelWidth);
    const QString longDate = QLocale().toString(QDate(2028, 12, 28), QLocale::ShortFormat);
    header()->resizeSection(MessageColumns::DateColumn, fontMetrics().horizontalAdvance(longDate) + 20);
    header()->setSectionsMovable(false);
    connect(this, &QTreeView::clicked, this, &MessageView::toggle);
}

void MessageView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    const int character = fontMetrics().averageCharWidth();
    const int wanted = qBound(character * narrowest, width() / 6, character * widest);
    // Another width is one that the user has chosen. The wanted one may come from the settings.
    const int current = header()->sectionSize(MessageColumns::ChannelColumn);
    if (current != m_channelWidth && current != wanted)
        return;
    m_channelWidth = wanted;
    header()->resizeSection(MessageColumns::ChannelColumn, wanted);
}

void MessageView::setQuery(const MessageQuery &query)
{
    m_nextUnread.cancel();
    setColumnHidden(MessageColumns::ChannelColumn, query.channelUris.size() == 1);
    m_messages->setQuery(query);
    Q_EMIT currentMessageChanged();
}

QString MessageView::message() const { return m_messages->uriAt(currentIndex().row()); }

QStringList MessageView::selected() const
{
    QStringList uris;
    const QModelIndexList rows = selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        uris.append(m_messages->uriAt(row.row()));
    return uris;
}

QVariant MessageView::current(MessageModel::Role role) const { return currentIndex().data(role); }

void MessageView::selectRow(int row)
{
    const QModelIndex index = m_columns->index(row, MessageColumns::TitleColumn);
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    scrollTo(index);
}

void MessageView::setHidden(const QSet<QString> &uris)
{
    const auto isHidden = [&](int row) { return uris.contains(m_messages->uriAt(row)); };
    const int current = currentIndex().row();
    if (current >= 0 && isHidden(current)) {
        int next = current + 1;
        while (next < m_columns->rowCount() && isHidden(next))
            ++next;
        if (next == m_columns->rowCount())
            for (next = current - 1; next >= 0 && isHidden(next);)
                --next;
        setCurrentIndex(m_columns->index(next, MessageColumns::TitleColumn));
    }
    m_messages->setHidden(uris);
}

void MessageView::selectPrevious() { selectRow(currentIndex().row() - 1); }

void MessageView::selectFirst()
{
    if (!currentIndex().isValid())
        selectRow(0);
}

void MessageView::selectNextUnread()
{
    m_nextUnread.cancel();
    // Mostly it is near, where nothing has to be read.
    const int begin = currentIndex().row() + 1;
    const int end = qMin(begin + 50, m_columns->rowCount());
    for (int row = begin; row < end; ++row) {
        if (!m_columns->index(row, 0).data(MessageModel::IsReadRole).toBool()) {
            selectRow(row);
            return;
        }
    }
    findNextUnread();
}

void MessageView::findNextUnread()
{
    m_nextUnread = m_archive->read([query = query(), current = message()](const Store &store) {
        return nextUnreadMessage(store, query, current);
    });
    whenAnswered(m_nextUnread, this, [this](const Result<QString> &next) {
        if (next && !next->isEmpty())
            selectRow(m_messages->rowOf(*next));
        else
            Q_EMIT allRead();
    });
}

void MessageView::toggle(const QModelIndex &index)
{
    const QString uri = index.data(MessageModel::UriRole).toString();
    if (index.column() == MessageColumns::ReadColumn)
        Q_EMIT readWanted(uri, !index.data(MessageModel::IsReadRole).toBool());
    else if (index.column() == MessageColumns::FavoriteColumn)
        Q_EMIT favoriteWanted(uri, !index.data(MessageModel::IsFavoriteRole).toBool());
}

void MessageView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (current.row() != previous.row())
        Q_EMIT currentMessageChanged();
}

void MessageView::focusInEvent(QFocusEvent *event)
{
    // The base would make the first message the current one, so that it became read.
    if (currentIndex().isValid())
        QTreeView::focusInEvent(event);
    else
        QAbstractScrollArea::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
}

} // namespace Tidel
