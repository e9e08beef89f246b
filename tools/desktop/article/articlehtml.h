// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ARTICLEHTML_H
#define TIDEL_DESKTOP_ARTICLEHTML_H

#include <QString>
#include <QUrl>

namespace Tidel {

struct ShownMessage;

/// The schemes of the links that act on an enclosure. No text of a stranger has them.
extern const QString downloadScheme;
extern const QString openScheme;

/// The number of the enclosure that \a link acts on; -1 if it acts on none.
int enclosureOf(const QUrl &link);

/// The title of \a shown and what is said beside it.
QString headHtml(const ShownMessage &shown);
/// The enclosures of \a shown, with links that act on them; empty if there are none.
QString enclosuresHtml(const ShownMessage &shown);

} // namespace Tidel

#endif
