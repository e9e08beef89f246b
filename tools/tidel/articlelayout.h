// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARTICLELAYOUT_H
#define TIDEL_ARTICLELAYOUT_H

#include <QString>
#include <QStringList>

#include <TidelReader/article.h>

namespace Tidel {

/// Returns \a text in lines of at most \a width columns. Lines end between words; a word that is longer
/// stands alone in its line.
QStringList wrapped(const QString &text, int width);

/// Returns \a article as lines of at most \a width columns, with its links at the end. Lines of code are not
/// wrapped.
QStringList laidOut(const Article &article, int width);

} // namespace Tidel

#endif
