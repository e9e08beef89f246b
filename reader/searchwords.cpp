// SPDX-License-Identifier: LGPL-2.1-or-later
#include "searchwords_p.h"

#include "cleantext.h"

#include <QRegularExpression>
#include <QStringList>
#include <QVector>

#include <algorithm>

namespace Tidel {

namespace {

// SQLite refuses expressions that are nested too deep.
constexpr int maximumTerms = 64;

/// Returns true if SQLite finds a word in \a text; otherwise returns false.
bool hasWord(const QString &text)
{
    const QVector<uint> codePoints = text.toUcs4();
    return std::any_of(codePoints.cbegin(), codePoints.cend(),
                       [](uint c) { return QChar::isLetterOrNumber(c); });
}

Failure refusal(const QString &reason)
{
    return Failure(Error(Error::StoreRefused, QStringLiteral("search"), reason));
}

} // namespace

Result<QString> matchExpression(const QString &words)
{
    static const QRegularExpression term(QStringLiteral("\"([^\"]*)(?:\"(\\*)?|$)|([^\\s\"*]+)(\\*)?"));
    QStringList terms;
    auto matches = term.globalMatch(cleanText(words));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString text = match.captured(1) + match.captured(3);
        const bool isBeginning = !match.captured(2).isEmpty() || !match.captured(4).isEmpty();
        if (hasWord(text))
            terms.append(QLatin1Char('"') + text + QLatin1String(isBeginning ? "\"*" : "\""));
    }
    if (terms.isEmpty())
        return refusal(QStringLiteral("there is no word to look for; give a word of letters or digits"));
    if (terms.size() > maximumTerms)
        return refusal(QStringLiteral("there are more than %1 words; give fewer").arg(maximumTerms));
    return terms.join(QLatin1Char(' '));
}

} // namespace Tidel
