// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articlepane.h"

#include "answer.h"
#include "messageloading.h"

#include <TidelReader/archive.h>

#include <algorithm>

namespace Tidel {

ArticlePane::ArticlePane(Archive *archive, QWidget *parent) : ArticleView(parent), m_archive(archive)
{
    connect(archive, &Archive::messagesChanged, this, [this](const QStringList &uris) {
        if (uris.contains(m_wanted))
            reload();
    });
}

void ArticlePane::load(const QString &uri)
{
    m_wanted = uri;
    if (uri.isEmpty())
        clear();
    reload();
}

void ArticlePane::warmUp(const QString &uri)
{
    if (m_isWarm)
        return;
    m_isWarm = true;
    const auto reading = m_archive->read([uri](const Store &store) { return loadMessage(store, uri); });
    whenAnswered(reading, this, [this](const Result<ShownMessage> &loaded) {
        if (loaded && m_wanted.isEmpty())
            rehearse(*loaded);
    });
}

void ArticlePane::reload()
{
    m_reading.cancel();
    if (m_wanted.isEmpty())
        return;
    m_reading = m_archive->read([uri = m_wanted](const Store &store) { return loadMessage(store, uri); });
    whenAnswered(m_reading, this, [this, uri = m_wanted](const Result<ShownMessage> &loaded) {
        if (uri != m_wanted)
            return;
        if (!loaded) {
            clear();
            Q_EMIT failed(loaded.error().text());
            return;
        }
        const bool isNew = uri != message().uri;
        show(*loaded);
        if (isNew)
            Q_EMIT shown(uri);
    });
}

QUrl ArticlePane::link() const
{
    const QUrl link(message().message.link());
    const bool isWeb = link.scheme() == QLatin1String("http") || link.scheme() == QLatin1String("https");
    return isWeb ? link : QUrl();
}

FeedEnclosure ArticlePane::enclosure(const QString &uri) const
{
    const QList<FeedEnclosure> &enclosures = message().enclosures;
    const auto found = std::find_if(enclosures.cbegin(), enclosures.cend(),
                                    [&uri](const FeedEnclosure &file) { return file.uri() == uri; });
    return found == enclosures.cend() ? FeedEnclosure() : *found;
}

QString ArticlePane::fileNameOf(const QString &uri) const
{
    return QUrl(enclosure(uri).remoteUrl()).fileName();
}

QUrl ArticlePane::fileOf(const QString &uri) const
{
    const QUrl file(enclosure(uri).localUrl());
    return file.isLocalFile() ? file : QUrl();
}

} // namespace Tidel
