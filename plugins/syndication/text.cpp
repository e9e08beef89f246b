// SPDX-License-Identifier: LGPL-2.1-or-later
#include "text.h"

#include <QRegularExpression>

#include <Syndication/Tools>

#include <algorithm>

namespace Tidel {

namespace {

// The time that Syndication takes for a text grows with the square of its length.
constexpr int maximumTitleLength = 4000;

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

/// Escapes each < in \a html that does not begin a tag. Syndication would remove the text up to the next >.
QString withoutLooseMarks(QString html)
{
    static const QRegularExpression looseMark(QStringLiteral("<(?![A-Za-z/!?])"));
    return html.replace(looseMark, QStringLiteral("&lt;"));
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

QString plainText(const QString &html)
{
    const QString text = html.left(maximumTitleLength);
    const bool isPlain = !text.contains(QLatin1Char('<')) && !text.contains(QLatin1Char('&'));
    return cleanText(isPlain ? text : Syndication::htmlToPlainText(withoutLooseMarks(text))).simplified();
}

} // namespace Tidel
