// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LINKS_H
#define TIDEL_LINKS_H

#include <QString>
#include <QUrl>

namespace Tidel {

/// \a url as text in the form in which the store keeps addresses.
QString encodedUrl(const QUrl &url);

/// Whether \a link says nothing of a scheme, so that it needs a base.
bool isRelativeLink(const QString &link);

/// \a link, relative to \a base, as an absolute, encoded address; empty when it is none that a reader could
/// follow. Reading the result as a user's input gives the result again, so the store finds it under one name.
QString cleanLink(const QString &link, const QUrl &base);

/// Whether \a link is absolute and encoded, so that it can stand in a statement as it is.
bool isEncodedLink(const QString &link);

/// As cleanLink(), for files that can be downloaded.
QString cleanFileLink(const QString &link, const QUrl &base);

/// The clean \a link made distinct for the item with \a id: it leads to the same place.
QString linkForItem(const QString &link, const QString &id);

/// A link for an item that has none, made of the address of its feed and its \a id.
QString itemUrn(const QString &feedLink, const QString &id);

} // namespace Tidel

#endif
