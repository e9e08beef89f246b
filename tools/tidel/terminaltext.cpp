// SPDX-License-Identifier: LGPL-2.1-or-later
#include "terminaltext.h"

#include <QVector>

#include <TidelReader/usertext.h>

#include <wchar.h>

namespace Tidel {

namespace {

bool isBlank(char32_t c) { return (c >= '\t' && c <= '\r') || c == 0x85 || c == 0x2028 || c == 0x2029; }

bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7f && c <= 0x9f); }

/// Returns true for bidirectional embeddings, overrides and isolates, deprecated formatting characters and
/// interlinear annotations; otherwise returns false. Texts in mixed scripts need direction marks, which
/// change the direction of no other text.
bool isUnsafeFormatting(char32_t c)
{
    return (c >= 0x202a && c <= 0x202e) || (c >= 0x2066 && c <= 0x206f) || (c >= 0xfff9 && c <= 0xfffb)
        || c == 0xfeff;
}

int columnsOf(uint c)
{
    const int columns = wcwidth(wchar_t(c));
    return columns < 0 ? 1 : columns;
}

bool isSurrogate(char32_t c) { return c >= 0xd800 && c <= 0xdfff; }

} // namespace

QString terminalText(const QString &text)
{
    QString safe;
    safe.reserve(text.size());
    const QVector<uint> codePoints = withoutPasswords(text).toUcs4();
    for (char32_t c : codePoints) {
        if (isBlank(c))
            safe += QLatin1Char(' ');
        else if (isSurrogate(c))
            safe += QChar(QChar::ReplacementCharacter);
        else if (!isControl(c) && !isUnsafeFormatting(c))
            safe += QString::fromUcs4(&c, 1);
    }
    return safe;
}

int displayWidth(const QString &text)
{
    int width = 0;
    const QVector<uint> codePoints = text.toUcs4();
    for (uint c : codePoints)
        width += columnsOf(c);
    return width;
}

QString cut(const QString &text, int width)
{
    if (displayWidth(text) <= width)
        return text;
    QString beginning;
    int left = width - 1; // for the ellipsis
    const QVector<uint> codePoints = text.toUcs4();
    for (char32_t c : codePoints) {
        left -= columnsOf(c);
        if (left < 0)
            break;
        beginning += QString::fromUcs4(&c, 1);
    }
    while (beginning.endsWith(QLatin1Char(' ')))
        beginning.chop(1);
    return width < 1 ? QString() : beginning + QChar(0x2026);
}

} // namespace Tidel
