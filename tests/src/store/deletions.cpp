// SPDX-License-Identifier: LGPL-2.1-or-later
#include "deletions.h"

#include "statements.h"
#include "storetest.h"

namespace S = Statements;

namespace {

QString stored(const QString &uri, QStringList properties, const QStringList &owners, const QString &more)
{
    for (const QString &owner : owners)
        properties.append("nie:isLogicalPartOf <" + owner + '>');
    if (!more.isEmpty())
        properties.append(more);
    return "INSERT { <" + uri + "> " + properties.join(" ; ") + " } ";
}

} // namespace

namespace Deletions {

QString storedChannel(const QString &name, const QString &more)
{
    const QString link = "http://example.org/feed/" + name;
    return QString("INSERT { <%1> a nie:DataObject ; nie:created '2020-01-01T00:00:00Z'^^xsd:dateTime } ")
               .arg(link)
        + stored("urn:c:" + name, {"a mfo:FeedChannel", "nie:links <" + link + '>'}, {}, more);
}

QString storedMessage(const QString &name, const QStringList &owners, const QString &more)
{
    return stored("urn:m:" + name, {"a mfo:FeedMessage", "nie:links <http://example.org/" + name + '>'},
                  owners, more);
}

QString storedEnclosure(const QString &name, const QStringList &owners, const QString &more)
{
    return stored("urn:e:" + name,
                  {"a mfo:Enclosure", "mfo:remoteLink <http://example.org/" + name + ".ogg>",
                   "mfo:localLink <file:///" + name + ".ogg>"},
                  owners, more);
}

QString storedNode(const QString &uri)
{
    return "INSERT { <" + uri + "> a nie:DataObject ; nie:created '2020-01-01T00:00:00Z'^^xsd:dateTime } ";
}

QList<QUrl> messageUris(const QStringList &names)
{
    QList<QUrl> uris;
    for (const QString &name : names)
        uris.append(QUrl("urn:m:" + name));
    return uris;
}

QList<QUrl> enclosureUris(const QStringList &names)
{
    QList<QUrl> uris;
    for (const QString &name : names)
        uris.append(QUrl("urn:e:" + name));
    return uris;
}

FeedEnclosure announced(const QString &name)
{
    FeedEnclosure enclosure;
    enclosure.setUri("urn:e:" + name);
    enclosure.setRemoteUrl("http://example.org/" + name + ".ogg");
    enclosure.setLocalUrl("file:///" + name + ".ogg");
    return enclosure;
}

QStringList enclosureJournal(const QStringList &names)
{
    QStringList lines;
    QString update;
    QList<FeedEnclosure> enclosures;
    for (const QString &name : names) {
        lines.append(selectLine(S::enclosureToDelete("urn:e:" + name)));
        update += S::enclosurePiece("urn:e:" + name);
        enclosures.append(announced(name));
    }
    return lines + QStringList({deleteLine(update), signalLine(enclosures)});
}

QStringList enclosuresOfMessageJournal(const QString &messageUri, const QStringList &names)
{
    return QStringList(selectLine(S::enclosuresToDelete(messageUri)))
        + (names.isEmpty()
               ? QStringList(debugLine("deleteEnclosures(const QString&)", {"No enclosures found"}))
               : enclosureJournal(names));
}

QStringList messageJournal(const QList<QPair<QString, QStringList>> &namesWithEnclosures)
{
    QString update;
    QStringList rest;
    for (const auto &[name, enclosures] : namesWithEnclosures) {
        update += S::messagePiece("urn:m:" + name);
        rest += enclosuresOfMessageJournal("urn:m:" + name, enclosures);
    }
    return QStringList(deleteLine(update)) + rest;
}

QString emptyPathWarning() { return warningLine("QFile::remove: Empty or null file name"); }

} // namespace Deletions
