// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARTICLEBUILDER_P_H
#define TIDEL_ARTICLEBUILDER_P_H

#include "article.h"

#include <gumbo.h>

namespace Tidel {

/// Turns the nodes of an HTML tree into the blocks of an article.
class ArticleBuilder
{
public:
    explicit ArticleBuilder(const QUrl &base) : m_base(base) { }

    /// Continues with \a node and all nodes in it.
    void add(const GumboNode &node);
    /// Ends the last block and returns the article.
    Article finish();

private:
    void addText(const QString &text);
    void addChildren(const GumboNode &node);
    void addBlock(const GumboNode &node);
    void addQuotation(const GumboNode &node);
    void addList(const GumboNode &node);
    void addItem(const GumboNode &node);
    void addHeading(const GumboNode &node);
    void addCode(const GumboNode &node);
    void addRow(const GumboNode &node);
    void addLine(const GumboNode &node);
    void addBreak(const GumboNode &node);
    void addAnchor(const GumboNode &node);
    void addPicture(const GumboNode &node);
    void addMedium(const GumboNode &node);
    void addShortQuotation(const GumboNode &node);
    void skip(const GumboNode &) { }

    using Handler = void (ArticleBuilder::*)(const GumboNode &);
    static Handler handlerOf(GumboTag tag);

    /// Returns the mark of the address \a text, such as "[3]"; empty if it cannot be followed.
    QString mark(const QString &text, bool isPicture);
    /// Ends the current block, if it has any text.
    void endBlock();
    void pushBlock(ArticleBlock block);

    const QUrl m_base;
    Article m_article;
    QString m_text; ///< Of the current block.
    ArticleBlock::Kind m_kind = ArticleBlock::Paragraph;
    int m_quotes = 0;
    int m_lists = 0;
    QString m_marker;
    QVector<int> m_numbers; ///< Of the next item of each list; 0 for a list without numbers.
    bool m_isInCell = false; ///< The blocks of a cell are one text.
};

} // namespace Tidel

#endif
