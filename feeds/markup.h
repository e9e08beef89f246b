// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MARKUP_H
#define TIDEL_MARKUP_H

#include "element.h"

namespace Tidel {

/// \name Texts of elements
/// What the text of an element is, is decided from its type attribute, and without one from the text: it is
/// HTML if it has a tag or entity of HTML. Elements of Atom without a type are plain text.
/// @{
/// The text of \a element in one line of plain text; empty if it is null.
QString titleOf(const Element *element);
/// The text of \a element as HTML; empty if it is null.
QString htmlOf(const Element *element);
/// @}

/// Returns the plain text \a text as HTML. Line breaks become `<br/>`.
QString htmlOfPlainText(const QString &text);

} // namespace Tidel

#endif
