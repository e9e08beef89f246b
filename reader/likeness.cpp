// SPDX-License-Identifier: LGPL-2.1-or-later
#include "likeness_p.h"

#include "htmltext.h"
#include "itemkey.h"

#include <QRegularExpression>
#include <QStringList>

#include <feedenclosure.h>
#include <feedmessage.h>

namespace Tidel {

namespace {

// What pages count beside an article, in the languages of many feeds.
const char *const countedWords[] = {
    "views?",
    "reads?",
    "visits?",
    "hits?",
    "clicks?",
    "downloads?",
    "plays?",
    "listens?",
    "comments?",
    "replies",
    "reply",
    "responses?",
    "likes?",
    "shares?",
    "votes?",
    "points?",
    "reactions?",
    "followers?",
    "retweets?",
    "upvotes?",
    "ratings?",
    "Aufrufe?",
    "Zugriffe?",
    "Kommentare?",
    "Antwort(?:en)?",
    "Gefällt mir",
    "vues?",
    "commentaires?",
    "réponses?",
    "partages?",
    "vistas?",
    "visitas?",
    "comentarios?",
    "respuestas?",
    "comentários?",
    "visualizações",
    "visualizzazioni",
    "commenti",
    "commento",
    "weergaven",
    "reacties?",
    "wyświetle(?:nia|ń)",
    "komentarzy?",
    "просмотр(?:ов|а)?",
    "комментари(?:ев|я|й)",
    "回复",
    "评论",
    "浏览",
};

QRegularExpression counterPattern()
{
    QStringList words;
    for (const char *word : countedWords)
        words.append(QString::fromUtf8(word));
    const QString number =
        QStringLiteral("(?<![\\w.,])\\d{1,12}(?:[.,'\\x{a0}\\x{202f}]\\d{1,3}){0,4}[kKmM]?");
    const QString word =
        QLatin1String("(?<!\\w)(?:") + words.join(QLatin1Char('|')) + QLatin1String(")(?!\\w)");
    return QRegularExpression(number + QLatin1String(" ?(?=") + word + QLatin1String(")|(") + word
                                  + QLatin1String(" ?[:(]? ?)") + number,
                              QRegularExpression::CaseInsensitiveOption
                                  | QRegularExpression::UseUnicodePropertiesOption);
}

QString withoutCounters(QString text)
{
    static const QRegularExpression pattern = counterPattern();
    return text.replace(pattern, QStringLiteral("\\1"));
}

QString readText(const QString &html) { return withoutCounters(plainText(html)); }

/// The addresses of the enclosures without their queries, which often hold a signature or the time.
QStringList filesOf(const FeedMessage &message)
{
    QStringList files;
    const QList<FeedEnclosure> enclosures = message.enclosures();
    for (const FeedEnclosure &enclosure : enclosures)
        files.append(enclosure.remoteUrl().section(QLatin1Char('?'), 0, 0));
    files.sort();
    return files;
}

} // namespace

QString digest(const FeedMessage &message, const QString &channelUri)
{
    QStringList parts{message.title(), message.description(), message.summary()};
    const QList<FeedEnclosure> enclosures = message.enclosures();
    for (const FeedEnclosure &enclosure : enclosures)
        parts.append(enclosure.remoteUrl());
    return itemKey(channelUri, parts.join(QChar(0)));
}

bool readAlike(const FeedMessage &a, const FeedMessage &b)
{
    return withoutCounters(a.title().simplified()) == withoutCounters(b.title().simplified())
        && readText(a.description()) == readText(b.description())
        && readText(a.summary()) == readText(b.summary()) && filesOf(a) == filesOf(b);
}

} // namespace Tidel
