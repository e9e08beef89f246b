// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ARTICLECOLORS_H
#define TIDEL_DESKTOP_ARTICLECOLORS_H

#include <QColor>

QT_FORWARD_DECLARE_CLASS(QPalette)

namespace Tidel {

/// The colors of an article, which can be read with a light and with a dark palette.
struct ArticleColors
{
    explicit ArticleColors(const QPalette &palette);

    QColor text;
    QColor faint; ///< Of what is said beside the text.
    QColor line; ///< Of borders.
    QColor shade; ///< Behind code and heads of tables.
    QColor link;
};

/// The style sheet of an article in these colors.
QString articleStyle(const ArticleColors &colors);

} // namespace Tidel

#endif
