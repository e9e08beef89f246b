// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARTICLE_H
#define TIDEL_ARTICLE_H

#include "link.h"
#include "tidelreaderglobal.h"

#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVector>

namespace Tidel {

/// A part of an article that begins on a new line.
struct ArticleBlock
{
    /// What the block is.
    enum Kind {
        Paragraph, ///< Running text.
        Heading, ///< A heading of any level.
        Code, ///< Text whose blanks and line breaks count.
        Row, ///< A row of a table, with its cells.
        Line ///< A line that divides the article; it has no text.
    };

    Kind kind = Paragraph;
    int quotes = 0; ///< How many quotations it stands in.
    int lists = 0; ///< How many lists it stands in.
    QString
        marker; ///< "•" or a number such as "2." in the first block of an item of a list; otherwise empty.
    QString text; ///< With the marks of links, such as "[3]"; lines are separated by line feeds.
    QStringList cells; ///< The texts of the cells of a row.
};

/// An address that an article refers to.
struct ArticleLink
{
    Link link;
    bool isPicture = false; ///< True if the article shows it as a picture.
};

/**
 * What a person reads of an HTML text, in blocks that a program can lay out for its screen.
 *
 * Scripts, styles, comments and forms are left out. Links and pictures become marks in the text: "[3]" is the
 * third element of links. A text may come from a stranger: no control character remains, and elements that
 * are nested more than a hundred times deep are not distinguished.
 */
struct TIDELREADER_EXPORT Article
{
    QVector<ArticleBlock> blocks;
    QVector<ArticleLink> links; ///< Each address once, in the order of the text.

    /// Reads \a html. Relative addresses are relative to \a base.
    static Article fromHtml(const QString &html, const QUrl &base = QUrl());
};

} // namespace Tidel

#endif
