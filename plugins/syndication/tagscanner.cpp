// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tagscanner.h"

#include <cstring>

namespace Tidel {

TagScanner::TagScanner(const QByteArray &document)
    : m_at(document.constData()), m_end(document.constData() + document.size())
{
}

bool TagScanner::scan()
{
    for (skipTo('<'); m_at < m_end; skipTo('<')) {
        if (++m_at == m_end)
            break;
        m_extent.nodes += 2; // The tag and the text after it.
        if (*m_at == '/')
            scanEndTag();
        else if (*m_at == '?')
            skipPast("?>");
        else if (*m_at != '!')
            scanStartTag();
        else if (!scanDeclaration())
            return false;
    }
    return true;
}

bool TagScanner::startsWith(const char *text) const
{
    const size_t length = strlen(text);
    return size_t(m_end - m_at) >= length && memcmp(m_at, text, length) == 0;
}

void TagScanner::skipPast(const char *text)
{
    const void *found = memmem(m_at, size_t(m_end - m_at), text, strlen(text));
    m_at = found ? static_cast<const char *>(found) + strlen(text) : m_end;
}

void TagScanner::skipTo(char c)
{
    const void *found = memchr(m_at, c, size_t(m_end - m_at));
    m_at = found ? static_cast<const char *>(found) : m_end;
}

void TagScanner::scanStartTag()
{
    int attributes = 0;
    for (; m_at < m_end && *m_at != '>'; ++m_at) {
        if (*m_at == '"' || *m_at == '\'') {
            ++attributes;
            const char quote = *m_at++;
            skipTo(quote);
            if (m_at == m_end)
                return;
        }
    }
    m_extent.nodes += 2 * qint64(attributes); // Each has a text.
    m_extent.attributes = qMax(m_extent.attributes, m_openAttributes + attributes);
    m_extent.attributeSteps += attributes > 0 ? m_openAttributes + attributes : 0;
    m_extent.depth = qMax(m_extent.depth, int(m_openElements.size()) + 1);
    if (*(m_at - 1) == '/')
        return;
    m_openElements.push_back(attributes);
    m_openAttributes += attributes;
}

void TagScanner::scanEndTag()
{
    if (m_openElements.empty())
        return;
    m_openAttributes -= m_openElements.back();
    m_openElements.pop_back();
}

bool TagScanner::scanDeclaration()
{
    if (startsWith("!--")) {
        m_at += strlen("!--");
        skipPast("-->");
    } else if (startsWith("![CDATA[")) {
        skipPast("]]>");
    } else {
        const char *const start = m_at;
        skipTo('>');
        return !memchr(start, '[', size_t(m_at - start));
    }
    return true;
}

} // namespace Tidel
