// SPDX-License-Identifier: LGPL-2.1-or-later
#include "htmltags_p.h"

#include <QSet>

namespace Tidel {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool endsName(char c) { return isSpace(c) || c == '/' || c == '>'; }

/// The byte of \a html at \a at; a blank behind the end.
char byteAt(const QByteArray &html, int at) { return at < html.size() ? html.at(at) : ' '; }

/// The position behind \a part, which is searched from \a from on; the end if there is none.
int behind(const QByteArray &html, const QByteArray &part, int from)
{
    const int at = html.indexOf(part, from);
    return at < 0 ? html.size() : at + part.size();
}

/// The position behind the tag whose name ends at \a at. A ">" in a quoted value does not end it.
int tagEnd(const QByteArray &html, int at)
{
    while (at < html.size() && html.at(at) != '>') {
        if (html.at(at++) != '=')
            continue;
        while (at < html.size() && isSpace(html.at(at)))
            ++at;
        const char quote = byteAt(html, at);
        if (quote == '"' || quote == '\'')
            at = behind(html, QByteArray(1, quote), at + 1);
    }
    return qMin(at + 1, int(html.size()));
}

/// The position behind the end tag of the element \a name; the end if there is none.
int elementEnd(const QByteArray &html, const QByteArray &name, int from)
{
    for (int at = html.indexOf("</", from); at >= 0; at = html.indexOf("</", at + 2)) {
        const int nameEnd = at + 2 + name.size();
        if (html.mid(at + 2, name.size()).toLower() == name && endsName(byteAt(html, nameEnd)))
            return tagEnd(html, nameEnd);
    }
    return html.size();
}

HtmlTag tagAt(const QByteArray &html, int from, int nameStart)
{
    int nameEnd = nameStart;
    while (!endsName(byteAt(html, nameEnd)))
        ++nameEnd;
    const int end = tagEnd(html, nameEnd);
    HtmlTag tag{html.mid(nameStart, nameEnd - nameStart).toLower(), from, end, end};
    const bool isStart = nameStart == from + 1 && html.at(tag.end - 2) != '/';
    if (isStart && isUnread(tag.name))
        tag.to = elementEnd(html, tag.name, tag.to);
    return tag;
}

HtmlTag commentAt(const QByteArray &html, int from)
{
    const bool hasDashes = html.mid(from, 4) == "<!--";
    // "<!-->" is a whole comment, too.
    const int end = hasDashes ? behind(html, "-->", from + 2) : behind(html, ">", from);
    return {QByteArray(), from, end, end};
}

} // namespace

HtmlTag nextTag(const QByteArray &html, int from)
{
    for (int at = html.indexOf('<', from); at >= 0; at = html.indexOf('<', at + 1)) {
        const char next = byteAt(html, at + 1);
        const int nameStart = next == '/' ? at + 2 : at + 1;
        if (isLetter(byteAt(html, nameStart)))
            return tagAt(html, at, nameStart);
        if (next == '!' || next == '?' || next == '/')
            return commentAt(html, at);
    }
    const int end = int(html.size());
    return {QByteArray(), end, end, end};
}

bool isUnread(const QByteArray &name)
{
    static const QSet<QByteArray> names{"iframe", "noembed",  "noframes", "script",
                                        "style",  "template", "title"};
    return names.contains(name);
}

bool needsEndTag(const QByteArray &name)
{
    static const QSet<QByteArray> others{"area",  "base",  "br",       "col",     "embed",  "hr",   "img",
                                         "input", "link",  "meta",     "param",   "source", "wbr",  "track",
                                         "p",     "li",    "dt",       "dd",      "option", "tr",   "td",
                                         "th",    "rp",    "rt",       "body",    "head",   "html", "tbody",
                                         "tfoot", "thead", "colgroup", "optgroup"};
    return !name.isEmpty() && !others.contains(name);
}

} // namespace Tidel
