// SPDX-License-Identifier: LGPL-2.1-or-later
#include "cleantext.h"

#include <algorithm>

namespace Tidel {

namespace {

// Control characters that feeds use as the characters of windows-1252 with these numbers.
constexpr ushort windows1252[] = {
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178,
};

bool isOfWindows1252(QChar c)
{
    return c >= QChar(0x80) && c <= QChar(0x9f) && windows1252[c.unicode() - 0x80];
}

bool isUnwanted(QChar c)
{
    const ushort u = c.unicode();
    if (u < 0x20)
        return u != '\t' && u != '\n' && u != '\r';
    return (u >= 0x7f && u <= 0x9f) || u >= 0xfffe || (u >= 0xfdd0 && u <= 0xfdef);
}

bool needsCleaning(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return isUnwanted(c) || c.isSurrogate(); });
}

} // namespace

QString cleanText(const QString &text)
{
    if (!needsCleaning(text))
        return text;

    QString clean;
    clean.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (isOfWindows1252(c)) {
            clean += QChar(windows1252[c.unicode() - 0x80]);
        } else if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            clean += c;
            clean += text.at(++i);
        } else if (!c.isSurrogate() && !isUnwanted(c)) {
            clean += c;
        }
    }
    return clean;
}

} // namespace Tidel
