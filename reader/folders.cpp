// SPDX-License-Identifier: LGPL-2.1-or-later
#include "folders.h"

#include "cleantext.h"
#include "statements_p.h"
#include "store_p.h"

namespace Tidel {

namespace {

constexpr int maximumNameLength = 200;

} // namespace

Folders::Folders(const Store &store) : m_store(store) { }

QString Folders::path(const QStringList &names)
{
    QStringList clean;
    for (QString name : names) {
        name.replace(QLatin1Char('/'), QLatin1Char('-'));
        // The cut can leave half a character and a blank.
        name = cleanText(cleanText(name).simplified().left(maximumNameLength)).trimmed();
        if (!name.isEmpty() && clean.size() < maximumDepth)
            clean.append(name);
    }
    return clean.join(QLatin1Char('/'));
}

QStringList Folders::names(const QString &path)
{
    return Folders::path(path.split(QLatin1Char('/'))).split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

Result<QHash<QString, QString>> Folders::all() const
{
    return StorePrivate::of(m_store).values(Statements::everyDetail(Statements::folder),
                                            "read the folders of the channels from the store");
}

Result<void> Folders::move(const QString &channelUri, const QString &path)
{
    return StorePrivate::of(m_store).update(
        Statements::update(Statements::replaceFolder(channelUri, Folders::path(names(path)))),
        "put the channel into a folder in the store");
}

} // namespace Tidel
