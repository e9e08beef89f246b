// SPDX-License-Identifier: LGPL-2.1-or-later
#include "limitedhtml.h"

#include <QList>
#include <QSet>

#include <TidelReader/htmltags_p.h>

#include <algorithm>

namespace Tidel {

namespace {

// A text that nests deeper ends there. Searching for an open element takes a time that grows with the depth.
constexpr int maximumDepth = 250;

bool needsEndTag(const QByteArray &name)
{
    static const QSet<QByteArray> others{"area",  "base",  "br",       "col",     "embed",  "hr",   "img",
                                         "input", "link",  "meta",     "param",   "source", "wbr",  "track",
                                         "p",     "li",    "dt",       "dd",      "option", "tr",   "td",
                                         "th",    "rp",    "rt",       "body",    "head",   "html", "tbody",
                                         "tfoot", "thead", "colgroup", "optgroup"};
    return !name.isEmpty() && !others.contains(name);
}

/// Finds out where a text can end.
class Beginning
{
public:
    Beginning(const QByteArray &html, int size) : m_html(html), m_size(size) { }

    QByteArray read();

private:
    void pass(const HtmlTag &tag);
    /// The end of the last whole character or entity between \a from and \a to.
    int wholeText(int from, int to) const;

    const QByteArray &m_html;
    const int m_size;
    QList<QByteArray> m_endTags; // of the open elements
    int m_endTagsSize = 0;
};

QByteArray Beginning::read()
{
    int at = 0;
    while (true) {
        const HtmlTag tag = nextTag(m_html, at);
        const bool isTextWhole = tag.from + m_endTagsSize <= m_size;
        at = isTextWhole ? tag.from : wholeText(at, m_size - m_endTagsSize);
        // The end tag of this element needs a place, too.
        const int after = tag.to + m_endTagsSize + tag.name.size() + 3;
        if (!isTextWhole || after > m_size || m_endTags.size() == maximumDepth)
            break;
        pass(tag);
        at = tag.to;
    }
    QByteArray text = m_html.left(at);
    std::for_each(m_endTags.crbegin(), m_endTags.crend(), [&](const QByteArray &tag) { text += tag; });
    return text;
}

void Beginning::pass(const HtmlTag &tag)
{
    if (!needsEndTag(tag.name))
        return;
    const QByteArray endTag = "</" + tag.name + '>';
    if (m_html.at(tag.from + 1) != '/') {
        const bool isWhole = m_html.mid(tag.from, tag.to - tag.from).contains("</");
        if (!isWhole) {
            m_endTags.append(endTag);
            m_endTagsSize += endTag.size();
        }
        return;
    }
    for (int open = m_endTags.lastIndexOf(endTag); open >= 0 && open < m_endTags.size();)
        m_endTagsSize -= m_endTags.takeLast().size();
}

int Beginning::wholeText(int from, int to) const
{
    const auto continuesCharacter = [&](int at) { return (uchar(m_html.at(at)) & 0xc0) == 0x80; };
    while (to > from && continuesCharacter(to))
        --to;
    constexpr int longestEntity = 32;
    const int start = m_html.lastIndexOf('&', to - 1);
    const bool isCut =
        start >= from && start > to - longestEntity && !m_html.mid(start, to - start).contains(';');
    return std::max(from, isCut ? start : to);
}

} // namespace

QString limitedHtml(const QString &html, int size)
{
    constexpr int longestCharacter = 3; // for each QChar
    if (html.size() <= size / longestCharacter)
        return html;
    const QByteArray utf8 = html.toUtf8();
    return utf8.size() <= size ? html : QString::fromUtf8(Beginning(utf8, size).read());
}

} // namespace Tidel
