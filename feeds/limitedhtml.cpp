// SPDX-License-Identifier: LGPL-2.1-or-later
#include "limitedhtml.h"

#include <QVector>

#include <TidelReader/htmltags_p.h>

#include <algorithm>

namespace Tidel {

namespace {

// A text that nests deeper ends there. Searching for an open element takes a time that grows with the depth.
constexpr int maximumDepth = 250;

/// An element whose end tag is still to come.
struct OpenElement
{
    QByteArray endTag;
    int size; // of this end tag and those of the elements around it
};

/// Finds out where a text can end.
class Beginning
{
public:
    Beginning(const QByteArray &html, int size) : m_html(html), m_size(size) { }

    QByteArray read();

private:
    /// Passes \a tag if the end tags that are needed behind it fit; otherwise returns false.
    bool pass(const HtmlTag &tag);
    int sizeOfEndTags(int elements) const { return elements == 0 ? 0 : m_open.at(elements - 1).size; }
    int sizeOfEndTags() const { return sizeOfEndTags(int(m_open.size())); }
    /// The end of the last whole character or entity between \a from and \a to.
    int wholeText(int from, int to) const;

    const QByteArray &m_html;
    const int m_size;
    QVector<OpenElement> m_open;
};

QByteArray Beginning::read()
{
    int at = 0;
    while (true) {
        const HtmlTag tag = nextTag(m_html, at);
        if (tag.from + sizeOfEndTags() > m_size) {
            at = wholeText(at, m_size - sizeOfEndTags());
            break;
        }
        at = tag.from;
        if (!pass(tag))
            break;
        at = tag.to;
    }
    QByteArray text = m_html.left(at);
    std::for_each(m_open.crbegin(), m_open.crend(),
                  [&](const OpenElement &element) { text += element.endTag; });
    return text;
}

bool Beginning::pass(const HtmlTag &tag)
{
    const QByteArray endTag = "</" + tag.name + '>';
    const auto isSame = [&](const OpenElement &element) { return element.endTag == endTag; };
    const bool isEnd = m_html.at(tag.from + 1) == '/';
    // A script is passed with its end tag.
    const bool isWhole = tag.to > tag.end;
    const bool opens = !isEnd && !isWhole && needsEndTag(tag.name);
    const auto found = isEnd ? std::find_if(m_open.crbegin(), m_open.crend(), isSame) : m_open.crend();
    const int left = found == m_open.crend() ? int(m_open.size()) : int(m_open.crend() - found) - 1;
    const int size = sizeOfEndTags(left) + (opens ? int(endTag.size()) : 0);
    if (tag.to + size > m_size || left == maximumDepth)
        return false;
    m_open.resize(left);
    if (opens)
        m_open.append({endTag, size});
    return true;
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
