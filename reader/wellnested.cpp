// SPDX-License-Identifier: LGPL-2.1-or-later
#include "wellnested_p.h"

#include "htmltags_p.h"

#include <QHash>
#include <QSet>
#include <QVector>

namespace Tidel {

namespace {

using Names = QSet<QByteArray>;

constexpr int maximumDepth = 100;

/// What the start tag of an element ends: the outermost open element of these, unless it is outside of a
/// stop.
struct ImpliedEnd
{
    Names closes;
    Names stops;
};

const Names &headings()
{
    static const Names names{"h1", "h2", "h3", "h4", "h5", "h6"};
    return names;
}

const QHash<QByteArray, ImpliedEnd> &impliedEnds()
{
    static const QHash<QByteArray, ImpliedEnd> ends = [] {
        const Names cells{"td", "th", "caption", "table"};
        QHash<QByteArray, ImpliedEnd> table;
        const auto set = [&table](const Names &names, const Names &closes, const Names &stops) {
            for (const QByteArray &name : names)
                table.insert(name, {closes, stops});
        };
        set({"address", "article", "aside",    "blockquote", "center", "details", "dir",
             "div",     "dl",      "fieldset", "figcaption", "figure", "footer",  "header",
             "hgroup",  "hr",      "main",     "menu",       "nav",    "ol",      "p",
             "pre",     "search",  "section",  "summary",    "table",  "ul"},
            {"p"}, cells);
        set(headings(), Names(headings()).unite({"p"}), cells);
        set({"a"}, {"a"}, cells);
        set({"li"}, {"li"}, Names(cells).unite({"ul", "ol", "dir", "menu"}));
        set({"dt", "dd"}, {"dt", "dd"}, Names(cells).unite({"dl"}));
        set({"td", "th"}, {"td", "th"}, {"table", "tr"});
        set({"tr"}, {"tr", "td", "th", "caption"}, {"table", "thead", "tbody", "tfoot"});
        set({"thead", "tbody", "tfoot", "caption"}, {"thead", "tbody", "tfoot", "tr", "td", "th", "caption"},
            {"table"});
        set({"option", "optgroup"}, {"option", "optgroup"}, {"select"});
        set({"rp", "rt"}, {"rp", "rt"}, {"ruby"});
        return table;
    }();
    return ends;
}

bool isEmptyElement(const QByteArray &name)
{
    static const Names names{"area",  "base",  "basefont", "bgsound", "br",    "col",    "colgroup",
                             "embed", "hr",    "image",    "img",     "input", "keygen", "link",
                             "meta",  "param", "source",   "track",   "wbr"};
    return names.contains(name);
}

/// Tags that no reader misses, and that would change how the rest is parsed.
bool isUnwanted(const QByteArray &name)
{
    static const Names names{"html", "head", "body",      "frame",   "frameset", "font",
                             "nobr", "xmp",  "plaintext", "listing", "form"};
    return names.contains(name);
}

bool isOfTable(const QByteArray &name)
{
    static const Names names{"table", "thead", "tbody", "tfoot", "tr", "td", "th", "caption"};
    return names.contains(name);
}

/// Writes the tags of a text again, so that they are well nested.
class Nesting
{
public:
    explicit Nesting(const QByteArray &html) : m_html(html) { m_result.reserve(html.size()); }

    QByteArray read();

private:
    void add(const HtmlTag &tag);
    void start(const HtmlTag &tag);
    void end(const QByteArray &name);
    void closeForStartOf(const QByteArray &name);
    void open(const HtmlTag &tag);
    void close(int elementsLeft);
    QByteArray source(const HtmlTag &tag) const { return m_html.mid(tag.from, tag.end - tag.from); }

    const QByteArray &m_html;
    QByteArray m_result;
    QVector<HtmlTag> m_open;
};

QByteArray Nesting::read()
{
    int at = 0;
    while (at < m_html.size()) {
        const HtmlTag tag = nextTag(m_html, at);
        m_result += m_html.mid(at, tag.from - at);
        // A comment has no name.
        if (!tag.name.isEmpty() && !isUnwanted(tag.name))
            add(tag);
        at = tag.to;
    }
    close(0);
    return m_result;
}

void Nesting::add(const HtmlTag &tag)
{
    if (m_html.at(tag.from + 1) == '/')
        end(tag.name);
    else
        start(tag);
}

void Nesting::start(const HtmlTag &tag)
{
    const QByteArray text = source(tag);
    // An anchor that leads nowhere is often left open.
    if (tag.name == "a" && !text.toLower().contains("href"))
        return;
    closeForStartOf(tag.name);
    // Within a picture, a parser reads what it would not read elsewhere.
    if (isUnread(tag.name))
        m_result += tag.name == "iframe" ? text + "</iframe>" : QByteArray();
    else if (isEmptyElement(tag.name))
        m_result += text;
    else if (m_open.size() < maximumDepth)
        open(tag);
}

void Nesting::closeForStartOf(const QByteArray &name)
{
    const auto implied = impliedEnds().constFind(name);
    if (implied == impliedEnds().cend())
        return;
    int found = -1;
    const HtmlTag *link = nullptr;
    HtmlTag reopened;
    for (int i = int(m_open.size()) - 1; i >= 0 && !implied->stops.contains(m_open.at(i).name); --i) {
        if (implied->closes.contains(m_open.at(i).name))
            found = i;
        else if (found < 0 && m_open.at(i).name == "a")
            link = &m_open.at(i);
    }
    if (found < 0)
        return;
    // A link around a block stays a link, though the block ends the paragraph that the link began in.
    const bool reopens = link && name != "p";
    if (reopens)
        reopened = *link;
    close(found);
    if (reopens)
        open(reopened);
}

void Nesting::end(const QByteArray &name)
{
    for (int i = int(m_open.size()) - 1; i >= 0; --i) {
        const QByteArray &openName = m_open.at(i).name;
        if (openName == name)
            return close(i);
        // What is in a cell does not end what is around the table.
        if (isOfTable(openName) && (!isOfTable(name) || openName == "table"))
            return;
    }
}

void Nesting::open(const HtmlTag &tag)
{
    m_result += source(tag);
    m_open.append(tag);
}

void Nesting::close(int elementsLeft)
{
    while (m_open.size() > elementsLeft)
        m_result += "</" + m_open.takeLast().name + '>';
}

} // namespace

QByteArray wellNested(const QByteArray &html) { return Nesting(html).read(); }

} // namespace Tidel
