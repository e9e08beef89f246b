// SPDX-License-Identifier: LGPL-2.1-or-later
#include "elementbuilder.h"

#include "feedlimits.h"

#include <QUrl>

#include <algorithm>

namespace Tidel {

namespace {

constexpr int maximumDepth = 250;
constexpr int maximumElements = 2 * 1000 * 1000;
// What one item has in excess of this is ignored.
constexpr size_t maximumKept = 50000;

/// The elements that hold elements instead of a text with markup.
constexpr ElementName containers[] = {
    {Vocabulary::Core, "rss"},       {Vocabulary::Core, "rdf"},      {Vocabulary::Core, "feed"},
    {Vocabulary::Core, "channel"},   {Vocabulary::Core, "item"},     {Vocabulary::Core, "entry"},
    {Vocabulary::Core, "items"},     {Vocabulary::Core, "author"},   {Vocabulary::Core, "contributor"},
    {Vocabulary::Core, "source"},    {Vocabulary::Core, "image"},    {Vocabulary::Core, "textinput"},
    {Vocabulary::Core, "skiphours"}, {Vocabulary::Core, "skipdays"}, {Vocabulary::Rdf, "rdf"},
    {Vocabulary::Rdf, "seq"},        {Vocabulary::Rdf, "li"},        {Vocabulary::Itunes, "owner"},
    {Vocabulary::Media, "group"},    {Vocabulary::Media, "content"},
};

bool isContainer(const Element &element)
{
    return std::any_of(std::begin(containers), std::end(containers),
                       [&](const ElementName &name) { return element.is(name); });
}

bool isItem(const Element &element)
{
    return element.is({Vocabulary::Core, "item"}) || element.is({Vocabulary::Core, "entry"});
}

constexpr std::string_view emptyTags[] = {"area", "br",    "col",    "embed", "hr",
                                          "img",  "input", "source", "track", "wbr"};

bool isEmptyTag(const std::string &name)
{
    return std::find(std::begin(emptyTags), std::end(emptyTags), name) != std::end(emptyTags);
}

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return result;
}

void appendEscaped(std::string &target, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '<': target += "&lt;"; break;
        case '>': target += "&gt;"; break;
        case '&': target += "&amp;"; break;
        case '"': target += "&quot;"; break;
        default: target += c;
        }
    }
}

/// At most \a size bytes of \a text, without a part of a character.
std::string_view beginning(std::string_view text, size_t size)
{
    if (text.size() <= size)
        return text;
    while (size > 0 && (uchar(text[size]) & 0xc0) == 0x80)
        --size;
    return text.substr(0, size);
}

/// The base for what is in an element with the `xml:base` \a reference in one with \a base; empty if it is
/// too long.
QString resolved(const QString &base, std::string_view reference)
{
    if (reference.size() > size_t(maximumBaseLength))
        return QString();
    const QString text = QString::fromUtf8(reference.data(), int(reference.size())).trimmed();
    const QString whole = base.isEmpty() ? text : QUrl(base).resolved(QUrl(text)).toString();
    return whole.size() <= maximumBaseLength ? whole : QString();
}

} // namespace

ElementBuilder::ElementBuilder(std::function<void(const Element &)> takeItem)
    : m_takeItem(std::move(takeItem))
{
}

bool ElementBuilder::startElement(const XmlTag &tag)
{
    if (!isWithinLimits())
        return false;
    if (m_ignored > 0) {
        ++m_ignored;
        return true;
    }
    const bool isRoot = m_path.empty();
    const Vocabulary vocabulary = vocabularyOfTag(tag);
    const bool isMarkup = !isRoot && (!m_markup.empty() || !isContainer(*m_path.back()));
    const bool isUnwanted = !isRoot && (vocabulary == Vocabulary::Other || m_kept > maximumKept);
    if (isMarkup ? room() == 0 : isUnwanted)
        m_ignored = 1;
    else if (isMarkup)
        startMarkup(tag);
    else
        add(vocabulary, tag);
    return true;
}

bool ElementBuilder::isWithinLimits()
{
    if (m_path.size() + m_markup.size() + size_t(m_ignored) > maximumDepth)
        m_obstacle = QStringLiteral("the document is too complex: its elements are nested more than %1 deep")
                         .arg(maximumDepth);
    else if (++m_elements > maximumElements)
        m_obstacle =
            QStringLiteral("the document is too complex: it has more than %1 elements").arg(maximumElements);
    else if (m_items > maximumItems)
        m_obstacle = tooManyItems();
    return m_obstacle.isEmpty();
}

Vocabulary ElementBuilder::vocabularyOfTag(const XmlTag &tag) const
{
    const Vocabulary vocabulary = vocabularyOf(tag.uri, tag.prefix);
    const bool isOfRoot = m_path.empty() || tag.prefix == m_rootPrefix;
    return vocabulary == Vocabulary::Other && isOfRoot ? Vocabulary::Core : vocabulary;
}

void ElementBuilder::add(Vocabulary vocabulary, const XmlTag &tag)
{
    Element *parent = m_path.empty() ? nullptr : m_path.back();
    if (parent)
        parent->children.emplace_back();
    else
        m_rootPrefix = tag.prefix;
    Element &element = parent ? parent->children.back() : m_root;
    element.vocabulary = vocabulary;
    element.name = lowered(tag.name);
    element.isAtom = isAtomNamespace(tag.uri) || m_root.name == "feed";
    element.base = parent ? parent->base : QString();
    if (isItem(element))
        m_keptBeforeItem = m_kept;
    m_kept += 1 + tag.attributes.size();
    for (const XmlTag::Attribute &attribute : tag.attributes) {
        if (attribute.prefix != "xml")
            element.attributes.push_back({lowered(attribute.name), std::string(attribute.value)});
        else if (attribute.name == "base")
            element.base = resolved(element.base, attribute.value);
        else if (attribute.name == "lang")
            element.language = lineOf(attribute.value);
    }
    m_path.push_back(&element);
}

void ElementBuilder::startMarkup(const XmlTag &tag)
{
    Element &element = *m_path.back();
    if (!element.hasMarkup) {
        std::string escaped;
        appendEscaped(escaped, element.text);
        element.text = std::move(escaped);
        element.hasMarkup = true;
    }
    element.text.append("<").append(tag.name);
    for (const XmlTag::Attribute &attribute : tag.attributes) {
        if (!attribute.prefix.empty() || attribute.value.size() > room())
            continue;
        element.text.append(" ").append(attribute.name).append("=\"");
        appendEscaped(element.text, attribute.value);
        element.text += '"';
    }
    m_markup.emplace_back(tag.name);
    element.text += isEmptyTag(m_markup.back()) ? "/>" : ">";
}

bool ElementBuilder::endElement()
{
    if (m_ignored > 0) {
        --m_ignored;
    } else if (!m_markup.empty()) {
        endMarkup();
    } else if (!m_path.empty()) {
        const bool isItemEnd = isItem(*m_path.back()) && m_path.size() > 1;
        if (isItemEnd)
            endItem();
        m_path.pop_back();
        if (isItemEnd)
            m_path.back()->children.pop_back();
    }
    return true;
}

void ElementBuilder::endMarkup()
{
    if (!isEmptyTag(m_markup.back()))
        m_path.back()->text.append("</").append(m_markup.back()).append(">");
    m_markup.pop_back();
}

// The item in which a document was cut is not complete.
void ElementBuilder::endItem()
{
    m_kept = m_keptBeforeItem;
    if (m_isCut)
        return;
    ++m_items;
    m_takeItem(*m_path.back());
}

size_t ElementBuilder::room() const
{
    return maximumSourceSize - std::min(m_path.back()->text.size(), size_t(maximumSourceSize));
}

bool ElementBuilder::text(std::string_view text, bool isLiteral)
{
    if (m_ignored > 0 || m_path.empty())
        return true;
    Element &element = *m_path.back();
    const std::string_view part = beginning(text, room());
    if (element.hasMarkup && !isLiteral)
        appendEscaped(element.text, part);
    else
        element.text += part;
    return true;
}

} // namespace Tidel
