// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articlelayout.h"

#include "table.h"
#include "terminaltext.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace Tidel {

namespace {

const QString cellBorder = QStringLiteral(" | ");

/// What stands before the lines of a block.
struct Margin
{
    QString first; ///< Before the first line.
    QString rest; ///< Before the other lines.
};

Margin marginOf(const ArticleBlock &block)
{
    const QString quotes = QStringLiteral("> ").repeated(block.quotes);
    const QString indent = quotes + QStringLiteral("   ").repeated(block.lists);
    if (block.marker.isEmpty())
        return {indent, indent};
    const int room = 2 + 3 * (block.lists - 1);
    return {quotes + QString(qMax(0, room - displayWidth(block.marker)), QLatin1Char(' ')) + block.marker
                + QLatin1Char(' '),
            indent};
}

QStringList withMargin(const QStringList &lines, const Margin &margin)
{
    QStringList result;
    for (const QString &line : lines)
        result.append((result.isEmpty() ? margin.first : margin.rest) + line);
    return result;
}

QStringList textLines(const QString &text, int width)
{
    QStringList lines;
    for (const QString &line : text.split(QLatin1Char('\n')))
        lines += wrapped(line, width);
    return lines;
}

int widest(const QStringList &lines)
{
    int width = 0;
    for (const QString &line : lines)
        width = qMax(width, displayWidth(line));
    return width;
}

/// Returns rows in aligned columns if they fit into \a width, otherwise each row as a paragraph.
QStringList rowLines(const QVector<ArticleBlock> &rows, int width)
{
    Table table;
    for (const ArticleBlock &row : rows)
        table.addRow(row.cells);
    const QStringList aligned = table.lines();
    if (widest(aligned) <= width)
        return aligned;
    QStringList lines;
    for (const ArticleBlock &row : rows)
        lines += wrapped(row.cells.join(cellBorder), width);
    return lines;
}

QStringList blockLines(const ArticleBlock &block, int width)
{
    switch (block.kind) {
    case ArticleBlock::Heading: {
        QStringList lines = textLines(block.text, width);
        return lines << QString(widest(lines), QLatin1Char('-'));
    }
    case ArticleBlock::Code: return block.text.split(QLatin1Char('\n'));
    case ArticleBlock::Line: return {QStringLiteral("* * *")};
    case ArticleBlock::Row:
    case ArticleBlock::Paragraph: break;
    }
    return textLines(block.text, width);
}

QStringList linkLines(const QVector<ArticleLink> &links)
{
    QStringList lines;
    for (int i = 0; i < links.size(); ++i)
        lines.append(QStringLiteral("[%1] %2%3")
                         .arg(QString::number(i + 1),
                              QLatin1String(links.at(i).isPicture ? "(picture) " : ""),
                              links.at(i).link.toString()));
    return lines;
}

bool isRow(const ArticleBlock &block) { return block.kind == ArticleBlock::Row; }

/// Returns true if an empty line separates \a block from \a before; otherwise returns false.
bool isApart(const ArticleBlock &before, const ArticleBlock &block)
{
    const bool areItems = block.lists > 0 && before.lists > 0 && !block.marker.isEmpty();
    return !areItems || block.quotes != before.quotes;
}

} // namespace

QStringList wrapped(const QString &text, int width)
{
    QStringList lines;
    QString line;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, text);
    for (int from = 0, to = int(finder.toNextBoundary()); to != -1;
         from = to, to = int(finder.toNextBoundary())) {
        const QString part = text.mid(from, to - from);
        if (!line.isEmpty() && displayWidth(line) + displayWidth(part.trimmed()) > width) {
            lines.append(line.trimmed());
            line.clear();
        }
        line += part;
    }
    lines.append(line.trimmed());
    return lines;
}

QStringList laidOut(const Article &article, int width)
{
    QStringList lines;
    const QVector<ArticleBlock> &blocks = article.blocks;
    for (auto block = blocks.cbegin(); block != blocks.cend();) {
        const Margin margin = marginOf(*block);
        const int room = qMax(10, width - displayWidth(margin.rest));
        if (block != blocks.cbegin() && isApart(*(block - 1), *block))
            lines.append(QString());
        const auto end = isRow(*block) ? std::find_if_not(block, blocks.cend(), isRow) : block + 1;
        const QStringList body =
            isRow(*block) ? rowLines(QVector<ArticleBlock>(block, end), room) : blockLines(*block, room);
        lines += withMargin(body, margin);
        block = end;
    }
    if (!article.links.isEmpty() && !lines.isEmpty())
        lines.append(QString());
    return lines + linkLines(article.links);
}

} // namespace Tidel
