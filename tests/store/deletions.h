// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef DELETIONS_H
#define DELETIONS_H

#include <feedenclosure.h>

#include <QList>
#include <QStringList>
#include <QUrl>

/**
 * What tests store to have it deleted, and what deleting it does.
 *
 * The name 1 is that of the channel <urn:c:1> with the link <http://example.org/feed/1>, of the message
 * <urn:m:1> with the link <http://example.org/1>, and of the enclosure <urn:e:1> with the remote link
 * <http://example.org/1.ogg> and the local link <file:///1.ogg>. Owners are given as URIs.
 */
namespace Deletions {

/// \name Statements that store something
/// What stands in \a more is said of it as well.
/// @{
QString storedChannel(const QString &name, const QString &more = QString());
QString storedMessage(const QString &name, const QStringList &owners, const QString &more = QString());
QString storedEnclosure(const QString &name, const QStringList &owners, const QString &more = QString());
/// A resource that is more than the end of a link.
QString storedNode(const QString &uri);
/// @}

QList<QUrl> messageUris(const QStringList &names);
QList<QUrl> enclosureUris(const QStringList &names);
/// What the signal says of an enclosure.
FeedEnclosure announced(const QString &name);

/// \name Journals of the operations that others use
/// @{
/// deleteEnclosures() of a list, all of which are stored.
QStringList enclosureJournal(const QStringList &names);
/// deleteEnclosures() of a message that has these by itself.
QStringList enclosuresOfMessageJournal(const QString &messageUri, const QStringList &names);
/// deleteMessages() of a list of messages, with the enclosures that each has by itself.
QStringList messageJournal(const QList<QPair<QString, QStringList>> &namesWithEnclosures);
/// @}

/// The line of an image whose file is to be removed where there is none.
QString emptyPathWarning();

} // namespace Deletions

#endif
