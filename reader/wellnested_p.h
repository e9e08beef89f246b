// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WELLNESTED_P_H
#define TIDEL_WELLNESTED_P_H

#include <QByteArray>

namespace Tidel {

/// Returns \a html with an end tag for each element that has one, without overlaps, and without the tags of
/// elements that are nested more than a hundred times deep.
///
/// An HTML parser builds a tree of it in a time that grows with its length. The time and the memory for other
/// texts can grow with the square: end tags that a parser ignores let elements nest without limit, and
/// elements that overlap are repeated in each block.
QByteArray wellNested(const QByteArray &html);

} // namespace Tidel

#endif
