// SPDX-License-Identifier: LGPL-2.1-or-later
#include "candidates.h"

#include "output.h"

#include <QJsonArray>
#include <QJsonObject>

#include <TidelReader/usertext.h>

namespace Tidel {

void showCandidates(const QString &name, const char *nouns, LastList::Kind kind,
                    const QList<Candidate> &candidates, Output &output)
{
    const bool areAll = candidates.size() <= maximumCandidates;
    const QList<Candidate> shown = candidates.mid(0, maximumCandidates);
    QStringList uris;
    QJsonArray links;
    for (const Candidate &candidate : shown) {
        uris.append(candidate.uri);
        links.append(withoutPasswords(candidate.link));
    }
    LastList(kind).remember(uris);
    output.error(
        QStringLiteral("%1: %2%3 %4 have such a title; use a number, a longer part of the title or a link")
            .arg(name, QLatin1String(areAll ? "" : "more than "), QString::number(shown.size()),
                 QLatin1String(nouns)),
        {{QStringLiteral("candidates"), links}});
    if (output.style() == Output::Json)
        return;
    const int width = int(QString::number(shown.size()).size());
    for (int i = 0; i < shown.size(); ++i)
        output.note(QStringLiteral("  %1  %2").arg(i + 1, width).arg(shown.at(i).text));
}

QString beyondList(int row, int rows, const char *nouns)
{
    return QStringLiteral("%1: the last list of %2 in this terminal has %3 row%4")
        .arg(QString::number(row), QLatin1String(nouns), QString::number(rows),
             QLatin1String(rows == 1 ? "" : "s"));
}

} // namespace Tidel
