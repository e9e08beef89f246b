// SPDX-License-Identifier: LGPL-2.1-or-later
#include "xmlmender.h"

#include "characters.h"
#include "parsingcost.h"
#include "rootelement.h"
#include "tagrules.h"
#include "xmlnames.h"

#include <libxml/HTMLparser.h>

#include <algorithm>
#include <cctype>

namespace Tidel {

namespace {

constexpr size_t noElement = size_t(-1);
// The parser refuses deeper documents.
constexpr size_t maximumDepth = 300;

bool continuesReference(char c) { return continuesName(c) && c != '-' && c != '.' && c != ':'; }

/// The code point of the entity \a name of HTML; 0 if there is none.
unsigned codeOfEntity(std::string_view name)
{
    const std::string text(name);
    const htmlEntityDesc *entity = htmlEntityLookup(reinterpret_cast<const xmlChar *>(text.c_str()));
    return entity ? entity->value : 0;
}

/// Returns true if U+FFFE or U+FFFF, which XML forbids, is at \a at in the UTF-8 text \a text; otherwise
/// returns false.
bool isNoncharacter(std::string_view text, size_t at)
{
    const std::string_view found = text.substr(at, 3);
    return found == "\xef\xbf\xbe" || found == "\xef\xbf\xbf";
}

size_t findNoncharacter(std::string_view text, size_t from)
{
    size_t at = text.find('\xef', from);
    while (at != std::string_view::npos && !isNoncharacter(text, at))
        at = text.find('\xef', at + 1);
    return at;
}

std::string withoutNoncharacters(std::string_view text)
{
    std::string result;
    size_t copied = 0;
    for (size_t at = findNoncharacter(text, 0); at != std::string_view::npos;
         at = findNoncharacter(text, copied)) {
        result += text.substr(copied, at - copied);
        copied = at + 3;
    }
    return result += text.substr(copied);
}

} // namespace

std::optional<std::string> XmlMender::mended(std::string_view document)
{
    if (findNoncharacter(document, 0) != std::string_view::npos)
        return mended(withoutNoncharacters(document));
    XmlMender mender(document);
    mender.m_mended.reserve(mender.m_capacity);
    mender.mendDocument();
    if (mender.isTooLarge())
        return std::nullopt;
    return std::move(mender.m_mended);
}

void XmlMender::mendDocument()
{
    skipTo(startOfFeed(m_text));
    while (m_at < m_text.size() && !m_isOver && !isTooLarge()) {
        const size_t markup = find("<");
        if (m_open.empty())
            skipTo(markup);
        else
            mendText(markup);
        if (m_at < m_text.size())
            mendMarkup();
    }
    if (!m_open.empty())
        m_mended.append("<?").append(cutInstruction).append("?>");
    closeDownTo(0);
}

void XmlMender::mendMarkup()
{
    const char next = m_at + 1 < m_text.size() ? m_text[m_at + 1] : '\0';
    if (next == '!')
        mendDeclaration();
    else if (next == '?')
        skipTo(findEnd("?>"));
    else if (next == '/')
        mendEndTag();
    else if (startsName(next))
        mendStartTag();
    else if (m_open.empty())
        skipTo(m_at + 1);
    else
        mendText(m_at + 1);
}

void XmlMender::mendDeclaration()
{
    if (startsWith("<!--"))
        skipTo(findEnd("-->"));
    else if (startsWith("<![CDATA[") && !m_open.empty())
        mendLiteral();
    else if (startsWith("<!DOCTYPE") && m_open.empty() && !m_hasType)
        mendDocumentType();
    else
        skipTo(findEnd(">"));
}

// Only the declarations of entities serve the reading of feeds.
void XmlMender::mendDocumentType()
{
    m_hasType = true;
    const DocumentType type = readDocumentType(m_text.substr(m_at));
    m_entities = type.entities;
    if (!m_entities.empty())
        m_mended += "<!DOCTYPE feed [";
    for (const auto &[name, value] : m_entities)
        m_mended.append("<!ENTITY ").append(name).append(" ").append(value).append(">");
    if (!m_entities.empty())
        m_mended += "]>";
    skipTo(m_at + type.size);
}

void XmlMender::mendLiteral()
{
    constexpr std::string_view start = "<![CDATA[";
    constexpr std::string_view end = "]]>";
    const size_t close = find(end);
    m_mended += start;
    for (const char c : m_text.substr(m_at, close - m_at).substr(start.size())) {
        if (!isForbiddenInXml(c))
            m_mended += c;
    }
    m_mended += end;
    m_at = std::min(close + end.size(), m_text.size());
}

void XmlMender::mendStartTag()
{
    const std::string_view name = leading(m_text.substr(m_at + 1), continuesName);
    const size_t sameItem = isItemTag(name) ? depthOf(name) : noElement;
    if (sameItem != noElement)
        closeDownTo(sameItem);
    else if (!m_open.empty() && endsBefore(m_open.back(), name))
        closeDownTo(m_open.size() - 1);
    m_mended.append("<").append(name);
    m_at += 1 + name.size();

    std::vector<std::string_view> known;
    bool isEmpty = isEmptyTag(name);
    for (skipBlanks(); m_at < m_text.size() && current() != '>' && current() != '<'; skipBlanks()) {
        isEmpty |= startsWith("/>");
        if (current() == '/')
            ++m_at;
        else
            mendAttribute(known);
    }
    if (current() == '>')
        ++m_at;
    m_mended += isEmpty ? "/>" : ">";
    if (!isEmpty)
        open(name);
}

void XmlMender::mendAttribute(std::vector<std::string_view> &known)
{
    if (!startsName(current())) {
        ++m_at;
        return;
    }
    const std::string_view name = leading(m_text.substr(m_at), continuesName);
    const bool isWanted = known.size() < size_t(maximumAttributes)
        && std::find(known.begin(), known.end(), name) == known.end();
    const size_t start = m_mended.size();
    m_mended.append(" ").append(name).append("=\"");
    m_at += name.size();
    skipBlanks();
    if (current() == '=') {
        ++m_at;
        skipBlanks();
        mendValue();
    }
    m_mended += '"';
    if (isWanted)
        known.push_back(name);
    else
        m_mended.resize(start);
}

// A < means that the quote at the end is missing, if there was a > before.
void XmlMender::mendValue()
{
    const char quote = current();
    if (quote != '"' && quote != '\'') {
        const size_t end = std::min(m_text.find_first_of(" \t\r\n<>", m_at), m_text.size());
        const bool endsTag = end > m_at && m_text[end - 1] == '/' && m_text.substr(end, 1) == ">";
        mendText(endsTag ? end - 1 : end);
        return;
    }
    ++m_at;
    size_t tagEnd = std::string_view::npos;
    size_t end = m_at;
    for (; end < m_text.size() && m_text[end] != quote; ++end) {
        if (m_text[end] == '>' && tagEnd == std::string_view::npos)
            tagEnd = end;
        if (m_text[end] == '<' && tagEnd != std::string_view::npos)
            break;
    }
    const bool isClosed = end < m_text.size() && m_text[end] == quote;
    mendText(isClosed ? end : std::min(tagEnd, m_text.size()));
    if (isClosed)
        ++m_at;
}

void XmlMender::mendEndTag()
{
    const std::string_view name = leading(m_text.substr(m_at + 2), continuesName);
    const size_t depth = depthOf(name);
    const size_t end = std::min(m_text.find_first_of("<>", m_at + 1), m_text.size());
    skipTo(end);
    if (current() == '>')
        ++m_at;
    if (depth != noElement)
        closeDownTo(depth);
}

void XmlMender::mendText(size_t end)
{
    while (m_at < end && !isTooLarge()) {
        const size_t start = m_at;
        while (m_at < end && isPlainInXml(m_text[m_at]))
            ++m_at;
        m_mended += m_text.substr(start, m_at - start);
        if (m_at == end)
            return;
        const char c = current();
        if (c == '&') {
            mendReference();
            continue;
        }
        if (c == '<')
            m_mended += "&lt;";
        else if (c == '>')
            m_mended += "&gt;";
        else if (c == '"')
            m_mended += "&quot;";
        ++m_at;
    }
}

void XmlMender::mendReference()
{
    const std::string_view rest = m_text.substr(m_at + 1, 64);
    if (!rest.empty() && rest.front() == '#') {
        mendNumber();
        return;
    }
    const std::string_view name = leading(rest, continuesReference);
    const bool isComplete = name.size() < rest.size() && rest[name.size()] == ';';
    const bool isDeclared = isComplete && m_entities.count(name) > 0;
    const unsigned code = isComplete && !isDeclared ? codeOfEntity(name) : 0;
    if (isDeclared)
        m_mended.append("&").append(name).append(";");
    else if (code != 0)
        m_mended.append("&#").append(std::to_string(code)).append(";");
    else
        m_mended += "&amp;";
    m_at += 1 + (isDeclared || code != 0 ? name.size() + 1 : 0);
}

void XmlMender::mendNumber()
{
    const std::string_view rest = m_text.substr(m_at + 2, 16);
    const bool isHex = !rest.empty() && (rest.front() == 'x' || rest.front() == 'X');
    const std::string digits(leading(rest.substr(isHex ? 1 : 0),
                                     [](char c) { return isxdigit(static_cast<unsigned char>(c)) != 0; }));
    char *end = nullptr;
    const unsigned long code = strtoul(digits.c_str(), &end, isHex ? 16 : 10);
    const auto used = size_t(end - digits.c_str());
    if (used == 0) {
        m_mended += "&amp;";
        ++m_at;
        return;
    }
    if (isCodePointOfXml(code))
        m_mended.append("&#").append(std::to_string(code)).append(";");
    m_at += 2 + (isHex ? 1 : 0) + used;
    if (current() == ';')
        ++m_at;
}

void XmlMender::skipTo(size_t end)
{
    m_mended.append(
        size_t(std::count(m_text.begin() + ptrdiff_t(m_at), m_text.begin() + ptrdiff_t(end), '\n')), '\n');
    m_at = end;
}

void XmlMender::skipBlanks() { skipTo(m_at + leading(m_text.substr(m_at), isBlank).size()); }

void XmlMender::open(std::string_view name)
{
    m_open.push_back(name);
    m_isOver = m_open.size() > maximumDepth;
}

void XmlMender::closeDownTo(size_t depth)
{
    while (m_open.size() > depth) {
        m_mended.append("</").append(m_open.back()).append(">");
        m_open.pop_back();
        m_isOver = m_open.empty();
    }
}

size_t XmlMender::depthOf(std::string_view name) const
{
    const auto found = std::find(m_open.rbegin(), m_open.rend(), name);
    return found == m_open.rend() ? noElement : size_t(m_open.rend() - found) - 1;
}

size_t XmlMender::find(std::string_view text) const
{
    return std::min(m_text.find(text, m_at), m_text.size());
}

size_t XmlMender::findEnd(std::string_view text) const
{
    const size_t start = m_text.find(text, m_at);
    return start == std::string_view::npos ? m_text.size() : start + text.size();
}

} // namespace Tidel
