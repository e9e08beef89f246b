// SPDX-License-Identifier: LGPL-2.1-or-later
#include "htmltext.h"

#include "cleantext.h"
#include "htmltags_p.h"
#include "htmltree_p.h"

#include <QSet>
#include <QTextBoundaryFinder>

namespace Tidel {

namespace {

bool isBlock(const QByteArray &name)
{
    static const QSet<QByteArray> names{
        "address", "article",    "aside",  "blockquote", "body",     "br",      "caption",  "center",
        "dd",      "details",    "dialog", "dir",        "div",      "dl",      "dt",       "fieldset",
        "figure",  "figcaption", "footer", "form",       "frameset", "h1",      "h2",       "h3",
        "h4",      "h5",         "h6",     "head",       "header",   "hgroup",  "hr",       "html",
        "legend",  "li",         "main",   "menu",       "nav",      "ol",      "optgroup", "option",
        "p",       "pre",        "search", "section",    "select",   "summary", "table",    "tbody",
        "td",      "textarea",   "tfoot",  "th",         "thead",    "title",   "tr",       "ul"};
    return names.contains(name);
}

/// The text of \a html without tags, still with its entities.
QByteArray withoutTags(const QByteArray &html)
{
    QByteArray text;
    for (int at = 0; at < html.size();) {
        const HtmlTag tag = nextTag(html, at);
        // Texts that a tag has separated must not become a tag together.
        text += html.mid(at, tag.from - at).replace('<', "&lt;");
        if (isBlock(tag.name))
            text += '\n';
        at = tag.to;
    }
    return text;
}

/// Resolves the entities of \a text, which has no tags.
QString withoutEntities(const QByteArray &text)
{
    if (!text.contains('&'))
        return QString::fromUtf8(text);

    QString result;
    HtmlTree(text).forEachInBody(
        [&](const GumboNode &node) { result += QString::fromUtf8(node.v.text.text); });
    return result;
}

} // namespace

QString plainText(const QString &html)
{
    const QString clean = cleanText(html);
    if (!clean.contains(QLatin1Char('<')) && !clean.contains(QLatin1Char('&')))
        return clean.simplified();
    // References such as "&#1;" name characters that are not wanted either.
    return cleanText(withoutEntities(withoutTags(clean.toUtf8()))).simplified();
}

QString firstWords(const QString &html)
{
    const int maximum = 80;
    const QString text = plainText(html.left(20000));
    if (text.size() <= maximum)
        return text;

    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text);
    words.setPosition(maximum - 1);
    const int end = words.isAtBoundary() ? maximum - 1 : int(words.toPreviousBoundary());
    // One endless word is cut anywhere.
    return cleanText(text.left(end > 0 ? end : maximum - 1)).trimmed() + QChar(0x2026);
}

} // namespace Tidel
