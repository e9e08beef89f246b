// SPDX-License-Identifier: LGPL-2.1-or-later
#include "usertext.h"

namespace Tidel {

namespace {

constexpr int maximumLength = 1000;
// The end of a reason says what to do.
constexpr int lengthOfEnd = 400;

bool endsAuthority(QChar c)
{
    static const QString delimiters = QStringLiteral("/?#<>\"");
    return c.isSpace() || delimiters.contains(c);
}

/// The place of the "@" that ends the user information at \a start of \a text; -1 if there is none.
int endOfUserInfo(const QString &text, int start)
{
    int end = -1;
    for (int i = start; i < text.size() && !endsAuthority(text.at(i)); ++i) {
        if (text.at(i) == QLatin1Char('@'))
            end = i;
    }
    return end;
}

} // namespace

QString withoutPasswords(const QString &text)
{
    const QString mark = QStringLiteral("://");
    QString shown;
    int copied = 0;
    for (int place = int(text.indexOf(mark)); place >= 0; place = int(text.indexOf(mark, place))) {
        place += int(mark.size());
        const int end = endOfUserInfo(text, place);
        const int colon = end < 0 ? -1 : int(text.indexOf(QLatin1Char(':'), place));
        if (colon < 0 || colon > end)
            continue;
        shown += text.mid(copied, colon - copied);
        copied = end;
    }
    return copied == 0 ? text : shown + text.mid(copied);
}

QString shownReason(const QString &text)
{
    const QString shown = withoutPasswords(text);
    if (shown.size() <= maximumLength)
        return shown;
    const int lengthOfBegin = maximumLength - lengthOfEnd;
    const bool splitsPair = shown.at(lengthOfBegin - 1).isHighSurrogate();
    const QString begin = shown.left(splitsPair ? lengthOfBegin - 1 : lengthOfBegin);
    const QString end = shown.right(lengthOfEnd);
    return begin + QStringLiteral(" ... ") + (end.at(0).isLowSurrogate() ? end.mid(1) : end);
}

} // namespace Tidel
