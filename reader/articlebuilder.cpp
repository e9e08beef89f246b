// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articlebuilder_p.h"

#include "htmlnode_p.h"

#include <QHash>

#include <algorithm>

namespace Tidel {

namespace {

/// Returns \a text with one blank in place of white space, except that line breaks of `<br>`, which are line
/// separators, become line feeds.
QString inLines(const QString &text)
{
    QStringList lines;
    for (const QString &line : text.split(QChar(QChar::LineSeparator)))
        lines.append(line.simplified());
    while (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    while (!lines.isEmpty() && lines.constFirst().isEmpty())
        lines.removeFirst();
    return lines.join(QLatin1Char('\n'));
}

/// Returns the lines of a block of code, without empty ones at its beginning and its end.
QString codeText(QString text)
{
    text.replace(QLatin1Char('\t'), QLatin1String("    ")).remove(QLatin1Char('\r'));
    text.replace(QChar(QChar::LineSeparator), QLatin1Char('\n'));
    QStringList lines = text.split(QLatin1Char('\n'));
    while (!lines.isEmpty() && lines.constLast().trimmed().isEmpty())
        lines.removeLast();
    while (!lines.isEmpty() && lines.constFirst().trimmed().isEmpty())
        lines.removeFirst();
    return lines.join(QLatin1Char('\n'));
}

} // namespace

ArticleBuilder::Handler ArticleBuilder::handlerOf(GumboTag tag)
{
    static const QHash<int, Handler> handlers = [] {
        QHash<int, Handler> table;
        const auto set = [&table](std::initializer_list<GumboTag> tags, Handler handler) {
            for (const GumboTag each : tags)
                table.insert(each, handler);
        };
        set({GUMBO_TAG_ADDRESS, GUMBO_TAG_ARTICLE, GUMBO_TAG_ASIDE,   GUMBO_TAG_BODY,    GUMBO_TAG_CAPTION,
             GUMBO_TAG_CENTER,  GUMBO_TAG_DETAILS, GUMBO_TAG_DIV,     GUMBO_TAG_DT,      GUMBO_TAG_FIGCAPTION,
             GUMBO_TAG_FIGURE,  GUMBO_TAG_FOOTER,  GUMBO_TAG_HEADER,  GUMBO_TAG_HGROUP,  GUMBO_TAG_MAIN,
             GUMBO_TAG_NAV,     GUMBO_TAG_P,       GUMBO_TAG_SECTION, GUMBO_TAG_SUMMARY, GUMBO_TAG_TABLE,
             GUMBO_TAG_TD,      GUMBO_TAG_TH},
            &ArticleBuilder::addBlock);
        set({GUMBO_TAG_BLOCKQUOTE}, &ArticleBuilder::addQuotation);
        set({GUMBO_TAG_UL, GUMBO_TAG_OL, GUMBO_TAG_DIR, GUMBO_TAG_MENU}, &ArticleBuilder::addList);
        set({GUMBO_TAG_LI, GUMBO_TAG_DD}, &ArticleBuilder::addItem);
        set({GUMBO_TAG_H1, GUMBO_TAG_H2, GUMBO_TAG_H3, GUMBO_TAG_H4, GUMBO_TAG_H5, GUMBO_TAG_H6},
            &ArticleBuilder::addHeading);
        set({GUMBO_TAG_PRE}, &ArticleBuilder::addCode);
        set({GUMBO_TAG_TR}, &ArticleBuilder::addRow);
        set({GUMBO_TAG_HR}, &ArticleBuilder::addLine);
        set({GUMBO_TAG_BR}, &ArticleBuilder::addBreak);
        set({GUMBO_TAG_A}, &ArticleBuilder::addAnchor);
        set({GUMBO_TAG_IMG, GUMBO_TAG_IMAGE}, &ArticleBuilder::addPicture);
        set({GUMBO_TAG_AUDIO, GUMBO_TAG_VIDEO, GUMBO_TAG_IFRAME, GUMBO_TAG_EMBED, GUMBO_TAG_OBJECT},
            &ArticleBuilder::addMedium);
        set({GUMBO_TAG_Q}, &ArticleBuilder::addShortQuotation);
        set({GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE, GUMBO_TAG_TEMPLATE, GUMBO_TAG_TITLE, GUMBO_TAG_NOSCRIPT,
             GUMBO_TAG_SELECT, GUMBO_TAG_TEXTAREA, GUMBO_TAG_BUTTON, GUMBO_TAG_INPUT, GUMBO_TAG_SVG,
             GUMBO_TAG_MATH},
            &ArticleBuilder::skip);
        return table;
    }();
    return handlers.value(tag, &ArticleBuilder::addChildren);
}

void ArticleBuilder::add(const GumboNode &node)
{
    if (isText(node))
        addText(QString::fromUtf8(node.v.text.text));
    else if (node.type == GUMBO_NODE_ELEMENT)
        (this->*handlerOf(node.v.element.tag))(node);
}

Article ArticleBuilder::finish()
{
    endBlock();
    return m_article;
}

void ArticleBuilder::addText(const QString &text)
{
    QString clean = cleanText(text);
    // Only line breaks that an element stands for may end a line.
    m_text += clean.replace(QChar(QChar::LineSeparator), QLatin1Char(' '));
}

void ArticleBuilder::addChildren(const GumboNode &node)
{
    forEachChild(node, [this](const GumboNode &child) { add(child); });
}

void ArticleBuilder::addBlock(const GumboNode &node)
{
    endBlock();
    addChildren(node);
    endBlock();
}

void ArticleBuilder::addQuotation(const GumboNode &node)
{
    endBlock();
    ++m_quotes;
    addChildren(node);
    endBlock();
    --m_quotes;
}

void ArticleBuilder::addList(const GumboNode &node)
{
    endBlock();
    ++m_lists;
    const bool isNumbered = node.v.element.tag == GUMBO_TAG_OL;
    bool isNumber = false;
    const int start = attribute(node, "start").toInt(&isNumber);
    m_numbers.append(isNumbered ? (isNumber && start > 0 ? start : 1) : 0);
    addChildren(node);
    endBlock();
    m_numbers.removeLast();
    --m_lists;
}

void ArticleBuilder::addItem(const GumboNode &node)
{
    endBlock();
    // A description, or an item that a feed has put outside of a list, is indented like an item.
    const bool isAlone = node.v.element.tag == GUMBO_TAG_DD || m_numbers.isEmpty();
    if (isAlone)
        ++m_lists;
    else
        m_marker = m_numbers.constLast() > 0 ? QStringLiteral("%1.").arg(m_numbers.last()++)
                                             : QString(QChar(0x2022));
    addChildren(node);
    endBlock();
    m_marker.clear();
    if (isAlone)
        --m_lists;
}

void ArticleBuilder::addHeading(const GumboNode &node)
{
    endBlock();
    m_kind = ArticleBlock::Heading;
    addChildren(node);
    endBlock();
    m_kind = ArticleBlock::Paragraph;
}

void ArticleBuilder::addCode(const GumboNode &node)
{
    endBlock();
    m_kind = ArticleBlock::Code;
    addChildren(node);
    endBlock();
    m_kind = ArticleBlock::Paragraph;
}

void ArticleBuilder::addRow(const GumboNode &node)
{
    const auto isCell = [](const GumboNode &child) {
        return child.type == GUMBO_NODE_ELEMENT
            && (child.v.element.tag == GUMBO_TAG_TD || child.v.element.tag == GUMBO_TAG_TH);
    };
    // Tables that lay out a page hold others. Their inner rows become texts of one cell.
    if (m_isInCell)
        return addBlock(node);
    endBlock();
    ArticleBlock row;
    row.kind = ArticleBlock::Row;
    m_isInCell = true;
    forEachChild(node, [&](const GumboNode &child) {
        if (!isCell(child))
            return;
        addChildren(child);
        row.cells.append(m_text.simplified());
        m_text.clear();
    });
    m_isInCell = false;
    if (row.cells.size() > 1) {
        pushBlock(row);
    } else {
        m_text = row.cells.value(0);
        endBlock();
    }
}

void ArticleBuilder::addLine(const GumboNode &)
{
    endBlock();
    if (m_isInCell)
        return;
    ArticleBlock line;
    line.kind = ArticleBlock::Line;
    pushBlock(line);
}

void ArticleBuilder::addBreak(const GumboNode &) { m_text += QChar(QChar::LineSeparator); }

void ArticleBuilder::addAnchor(const GumboNode &node)
{
    const QString href = attribute(node, "href");
    const int before = m_text.size();
    addChildren(node);
    // A link within the article leads nowhere here.
    const QString number = href.startsWith(QLatin1Char('#')) ? QString() : mark(href, false);
    if (number.isEmpty() || m_text.endsWith(QLatin1Char(' ') + number))
        return;
    const bool hasText = before < m_text.size() && !m_text.mid(before).trimmed().isEmpty();
    m_text += (hasText ? QLatin1String(" ") : QLatin1String("")) + number;
}

void ArticleBuilder::addPicture(const GumboNode &node)
{
    if (isPixel(node))
        return;
    const QString number = mark(attribute(node, "src"), true);
    const QString description = attribute(node, "alt").simplified();
    const QString name =
        description.isEmpty() ? QStringLiteral("picture") : QStringLiteral("picture: ") + description;
    if (!number.isEmpty())
        m_text += QStringLiteral("(%1) %2").arg(name, number);
}

void ArticleBuilder::addMedium(const GumboNode &node)
{
    const QString number = mark(addressOfMedium(node), false);
    if (!number.isEmpty())
        m_text += QStringLiteral(" (%1) %2 ")
                      .arg(QLatin1String(node.v.element.tag == GUMBO_TAG_AUDIO ? "audio" : "video"), number);
}

void ArticleBuilder::addShortQuotation(const GumboNode &node)
{
    m_text += QChar(0x201c);
    addChildren(node);
    m_text += QChar(0x201d);
}

QString ArticleBuilder::mark(const QString &text, bool isPicture)
{
    const Link link = Link::fromText(text, m_base);
    if (text.isEmpty() || link.isNull())
        return {};
    const auto isSame = [&link](const ArticleLink &known) { return known.link == link; };
    QVector<ArticleLink> &links = m_article.links;
    const auto known = std::find_if(links.cbegin(), links.cend(), isSame);
    const int index = int(known - links.cbegin());
    if (known == links.cend())
        links.append({link, isPicture});
    return QStringLiteral("[%1]").arg(index + 1);
}

void ArticleBuilder::endBlock()
{
    if (m_isInCell) {
        m_text += QLatin1Char(' ');
        return;
    }
    ArticleBlock block;
    block.kind = m_kind;
    block.text = m_kind == ArticleBlock::Code ? codeText(m_text) : inLines(m_text);
    m_text.clear();
    if (!block.text.isEmpty())
        pushBlock(block);
}

void ArticleBuilder::pushBlock(ArticleBlock block)
{
    block.quotes = m_quotes;
    block.lists = m_lists;
    block.marker = m_marker;
    m_marker.clear();
    m_article.blocks.append(block);
}

} // namespace Tidel
