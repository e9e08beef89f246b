// SPDX-License-Identifier: LGPL-2.1-or-later
#include "changes.h"

#include "articlelayout.h"
#include "phrases.h"
#include "terminaltext.h"

#include <TidelReader/article.h>
#include <TidelReader/worddiff.h>

namespace Tidel {

namespace {

/// The text of \a html, a line for each paragraph.
QString paragraphs(const QString &html, const QUrl &base)
{
    constexpr int endless = 1 << 24;
    QStringList lines = laidOut(Article::fromHtml(html, base), endless);
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

QString marked(DiffPiece::Kind kind, const QString &text)
{
    const QString word = text.trimmed();
    if (kind == DiffPiece::Same || word.isEmpty())
        return text;
    const QLatin1String form(kind == DiffPiece::Removed ? "[-%1-]" : "{+%1+}");
    return QString(text).replace(word, QString(form).arg(word));
}

/// Each line of \a pieces that has a change, with its marks.
QStringList changedLines(const QVector<DiffPiece> &pieces)
{
    QStringList lines{QString()};
    QVector<bool> areChanged{false};
    for (const DiffPiece &piece : pieces) {
        const QStringList parts = piece.text.split(QLatin1Char('\n'));
        for (int i = 0; i < parts.size(); ++i) {
            if (i > 0) {
                lines.append(QString());
                areChanged.append(false);
            }
            lines.last() += marked(piece.kind, parts.at(i));
            if (piece.kind != DiffPiece::Same && !parts.at(i).trimmed().isEmpty())
                areChanged.last() = true;
        }
    }
    QStringList changed;
    for (int i = 0; i < lines.size(); ++i) {
        if (areChanged.at(i))
            changed.append(lines.at(i));
    }
    return changed;
}

} // namespace

QStringList changeLines(const WholeMessage &whole, const QList<EarlierVersion> &versions, int width)
{
    const QString title = shownTitle(whole.message.title());
    QStringList lines = wrapped(terminalText(title), width);
    if (versions.isEmpty())
        return lines + QStringList{QString(), QStringLiteral("This message has not changed.")};
    const EarlierVersion &last = versions.constFirst();
    const QUrl base = whole.details.baseUrl.isEmpty() ? QUrl(whole.message.link()) : whole.details.baseUrl;
    const QString before = last.text.isEmpty() ? last.summary : last.text;
    const QString oldTitle = shownTitle(last.title);
    lines = wrapped(terminalText(changedLines(wordDiff(oldTitle, title)).value(0, title)), width);
    lines << QStringLiteral("Changed:    ") + shownTime(last.replaced);
    const QStringList changed =
        changedLines(wordDiff(paragraphs(before, base), paragraphs(htmlOf(whole), base)));
    for (const QString &line : changed) {
        lines.append(QString());
        lines += wrapped(terminalText(line), width);
    }
    return lines;
}

} // namespace Tidel
