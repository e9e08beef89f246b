// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef DELETIONS_H
#define DELETIONS_H

#include <feedenclosure.h>

#include <QList>
#include <QStringList>
#include <QUrl>

/**
 * Data that tests store and delete, and the journals of the deletions.
 *
 * The name 1 stands for the channel <urn:c:1> with the link <http://example.org/feed/1>, the message
 * <urn:m:1> with the link <http://example.org/1>, and the enclosure <urn:e:1> with the remote link
 * <http://example.org/1.ogg> and the local link <file:///1.ogg>. Owners are given as URIs.
 */
namespace Deletions {

/// \name Statements that store something
/// \a more contains further properties.
/// @{
QString storedChannel(const QString &name, const QString &more = QString());
QString storedMessage(const QString &name, const QStringList &owners, const QString &more = QString());
QString storedEnclosure(const QString &name, const QStringList &owners, const QString &more = QString());
/// Returns a resource that has properties of its own, unlike most links.
QString storedNode(const QString &uri);
/// @}

QList<QUrl> messageUris(const QStringList &names);
QList<QUrl> enclosureUris(const QStringList &names);
/// Returns an enclosure as the signal passes it.
FeedEnclosure announced(const QString &name);

/// \name Journals of the operations that others use
/// @{
/// Returns the journal of deleteEnclosures() for a list of stored enclosures.
QStringList enclosureJournal(const QStringList &names);
/// Returns the journal of deleteEnclosures() for a message which alone holds these enclosures.
QStringList enclosuresOfMessageJournal(const QString &messageUri, const QStringList &names);
/// Returns the journal of deleteMessages() for a list of messages, with the enclosures that each alone holds.
QStringList messageJournal(const QList<QPair<QString, QStringList>> &namesWithEnclosures);
/// @}

/// Returns the line that reports the deletion of a file without a name.
QString emptyPathWarning();

} // namespace Deletions

#endif
