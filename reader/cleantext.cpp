// SPDX-License-Identifier: LGPL-2.1-or-later
#include "cleantext.h"

#include <algorithm>

namespace Tidel {

namespace {

bool isUnwanted(QChar c)
{
    const ushort u = c.unicode();
    if (u < 0x20)
        return u != '\t' && u != '\n' && u != '\r';
    return u == 0x7f || u >= 0xfffe || (u >= 0xfdd0 && u <= 0xfdef);
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
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            clean += c;
            clean += text.at(++i);
        } else if (!c.isSurrogate() && !isUnwanted(c)) {
            clean += c;
        }
    }
    return clean;
}

} // namespace Tidel
