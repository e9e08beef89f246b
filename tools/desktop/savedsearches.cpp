// SPDX-License-Identifier: LGPL-2.1-or-later
#include "savedsearches.h"

#include "undocommand.h"

#include <QMetaEnum>
#include <QSettings>
#include <QUndoStack>
#include <QUuid>

#include <algorithm>

namespace Tidel {

namespace {

const QString arrayKey = QStringLiteral("searches");
const QString uriKey = QStringLiteral("uri");
const QString titleKey = QStringLiteral("title");
const QString wordsKey = QStringLiteral("words");
const QString placeKindKey = QStringLiteral("in");
const QString placeKey = QStringLiteral("place");

QMetaEnum kinds() { return QMetaEnum::fromType<ChannelModel::Kind>(); }

QList<ChannelSearch> readSettings()
{
    QSettings settings;
    QList<ChannelSearch> searches;
    const int count = settings.beginReadArray(arrayKey);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        bool isKnown = false;
        const QByteArray kind = settings.value(placeKindKey).toByteArray();
        ChannelSearch search;
        search.placeKind = ChannelModel::Kind(kinds().keyToValue(kind.constData(), &isKnown));
        search.uri = settings.value(uriKey).toString();
        search.title = settings.value(titleKey).toString();
        search.words = settings.value(wordsKey).toString();
        search.place = settings.value(placeKey).toString();
        if (isKnown && !search.uri.isEmpty() && !search.words.isEmpty())
            searches.append(search);
    }
    return searches;
}

} // namespace

SavedSearches::SavedSearches(QUndoStack *undoStack, QObject *parent)
    : QObject(parent), m_undoStack(undoStack), m_searches(readSettings())
{
}

int SavedSearches::indexOf(const QString &uri) const
{
    const auto isThis = [&uri](const ChannelSearch &search) { return search.uri == uri; };
    const auto found = std::find_if(m_searches.begin(), m_searches.end(), isThis);
    return found == m_searches.end() ? -1 : int(found - m_searches.begin());
}

ChannelSearch SavedSearches::find(const QString &uri) const { return m_searches.value(indexOf(uri)); }

QString SavedSearches::add(ChannelSearch search)
{
    for (const ChannelSearch &known : qAsConst(m_searches)) {
        if (known.words == search.words && known.placeKind == search.placeKind && known.place == search.place)
            return known.uri;
    }
    search.uri = QLatin1String("urn:uuid:") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    search.title = search.words;
    m_searches.append(search);
    store();
    return search.uri;
}

void SavedSearches::rename(const QString &uri, const QString &title)
{
    const int index = indexOf(uri);
    if (index < 0)
        return;
    m_searches[index].title = title;
    store();
}

void SavedSearches::remove(const QString &uri)
{
    const int index = indexOf(uri);
    if (index < 0)
        return;
    const ChannelSearch search = m_searches.at(index);
    const auto remove = [this, uri] {
        m_searches.removeAt(indexOf(uri));
        store();
    };
    const auto restore = [this, index, search] {
        m_searches.insert(qMin(index, int(m_searches.size())), search);
        store();
    };
    m_undoStack->push(new UndoCommand(tr("Removed the search “%1”").arg(search.title),
                                      tr("Remove the Search “%1”").arg(search.title), remove, restore));
}

void SavedSearches::store()
{
    QSettings settings;
    settings.remove(arrayKey);
    settings.beginWriteArray(arrayKey, int(m_searches.size()));
    for (int i = 0; i < m_searches.size(); ++i) {
        const ChannelSearch &search = m_searches.at(i);
        settings.setArrayIndex(i);
        settings.setValue(uriKey, search.uri);
        settings.setValue(titleKey, search.title);
        settings.setValue(wordsKey, search.words);
        settings.setValue(placeKindKey, QLatin1String(kinds().valueToKey(search.placeKind)));
        settings.setValue(placeKey, search.place);
    }
    settings.endArray();
    Q_EMIT changed();
}

} // namespace Tidel
