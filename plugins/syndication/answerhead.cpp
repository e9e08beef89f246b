// SPDX-License-Identifier: LGPL-2.1-or-later
#include "answerhead.h"

namespace Tidel {

namespace {

constexpr int maximumPhraseLength = 100;

} // namespace

bool AnswerHead::addLine(const QByteArray &line)
{
    ++m_lines;
    m_bytes += int(line.size());
    if (m_lines > maximumLines || m_bytes > maximumBytes)
        return false;
    const int colon = int(line.indexOf(':'));
    if (line.startsWith("HTTP/")) {
        beginAnswer(line.trimmed());
    } else if (colon > 0) {
        QByteArray &value = m_headers[line.left(colon).trimmed().toLower()];
        value += (value.isEmpty() ? "" : ", ") + line.mid(colon + 1).trimmed();
    }
    return true;
}

void AnswerHead::beginAnswer(const QByteArray &line)
{
    m_headers.clear();
    const QString text = QString::fromLatin1(line);
    m_status = text.section(QLatin1Char(' '), 1, 1).toInt();
    m_phrase = text.section(QLatin1Char(' '), 2).left(maximumPhraseLength);
}

qint64 AnswerHead::announcedSize() const
{
    bool isNumber = false;
    const qint64 size = header("content-length").toLongLong(&isNumber);
    // The announced size of compressed content is not the size after decompression.
    return isNumber && header("content-encoding").isEmpty() ? size : -1;
}

} // namespace Tidel
