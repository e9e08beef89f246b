// SPDX-License-Identifier: LGPL-2.1-or-later
#include "htmltext.h"

#include "cleantext.h"
#include "htmltags_p.h"
#include "htmltree_p.h"

#include <QSet>
#include <QTextBoundaryFinder>

#include <cctype>

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

/// Returns the end of the reference that begins at \a start of \a text with an ampersand.
int endOfReference(const QByteArray &text, int start)
{
    int end = start + 1;
    while (end < text.size() && (std::isalnum(uchar(text[end])) || text[end] == '#'))
        ++end;
    return end < text.size() && text[end] == ';' ? end + 1 : end;
}

/// The texts of the body of \a html, which has no tags but line breaks.
QStringList textsOf(const QByteArray &html)
{
    QStringList texts;
    HtmlTree(html).forEachInBody([&](const GumboNode &node) {
        if (node.type != GUMBO_NODE_ELEMENT)
            texts.append(QString::fromUtf8(node.v.text.text));
    });
    return texts;
}

/// Resolves the references of \a text, which has no tags. The parser is slow. If there are few references, it
/// gets nothing but these.
QString withoutEntities(const QByteArray &text)
{
    QByteArray references;
    QByteArrayList between;
    int copied = 0;
    for (int at = int(text.indexOf('&')); at != -1; at = int(text.indexOf('&', copied))) {
        between.append(text.mid(copied, at - copied));
        copied = endOfReference(text, at);
        // The parser keeps a text that begins with a letter as it is, and line breaks keep texts apart.
        references += "<br>x" + text.mid(at, copied - at);
        if (references.size() > text.size() / 4)
            return textsOf(text).join(QString());
    }
    const QStringList resolved = references.isEmpty() ? QStringList() : textsOf(references);
    QString result;
    for (int i = 0; i < resolved.size(); ++i)
        result += QString::fromUtf8(between.at(i)) + resolved.at(i).mid(1);
    return result + QString::fromUtf8(text.mid(copied));
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
