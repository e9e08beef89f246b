// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagetext.h"

#include "articlelayout.h"
#include "jsonobjects.h"
#include "phrases.h"
#include "terminaltext.h"

#include <QJsonArray>
#include <QLocale>

#include <TidelReader/article.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/htmltext.h>
#include <TidelReader/messages.h>
#include <TidelReader/usertext.h>

namespace Tidel {

namespace {

QString shownEnclosure(const FeedEnclosure &enclosure, const EnclosureDetails &details)
{
    QStringList facts;
    if (!enclosure.mimeType().isEmpty())
        facts.append(enclosure.mimeType());
    if (enclosure.length() > 0)
        facts.append(QLocale::c().formattedDataSize(enclosure.length()));
    if (details.duration > 0)
        facts.append(shownDuration(details.duration));
    QString text = enclosure.remoteUrl();
    if (!facts.isEmpty())
        text += QStringLiteral(" (%1)").arg(facts.join(QLatin1String(", ")));
    const QString file = QUrl(enclosure.localUrl()).toLocalFile();
    return file.isEmpty() ? text : text + QStringLiteral("; downloaded: ") + file;
}

/// Returns "NAME:  VALUE" lines; what has no value is left out. Addresses are not wrapped, so that a terminal
/// recognizes them.
QStringList fieldLines(const QVector<QPair<QString, QString>> &fields, int width)
{
    constexpr int indent = 12;
    QStringList lines;
    for (const auto &[name, value] : fields) {
        const bool isAddress = value.contains(QLatin1String("://"));
        QString start = QString(name + QLatin1Char(':')).leftJustified(indent);
        for (const QString &line : isAddress ? QStringList(value) : wrapped(value, width - indent)) {
            if (!value.isEmpty())
                lines.append(start + line);
            start.fill(QLatin1Char(' '));
        }
    }
    return lines;
}

QStringList headLines(const WholeMessage &whole, int width)
{
    const QString comma = QStringLiteral(", ");
    const auto time = [](const QDateTime &date) { return date.isValid() ? shownTime(date) : QString(); };
    QVector<QPair<QString, QString>> fields = {
        {QStringLiteral("Channel"), whole.headline.channels.join(comma)},
        {QStringLiteral("Author"), whole.details.authors.join(comma)},
        {QStringLiteral("Published"), time(whole.message.publishedDate())},
        {QStringLiteral("Updated"),
         whole.details.updatedDate == whole.message.publishedDate() ? QString()
                                                                    : time(whole.details.updatedDate)},
        {QStringLiteral("Categories"), whole.details.categories.join(comma)},
        {QStringLiteral("Favorite"), whole.message.isFavorite() ? QStringLiteral("yes") : QString()},
        {QStringLiteral("Link"), whole.message.link()},
        {QStringLiteral("Comments"), whole.details.comments.toString()},
    };
    for (const FeedEnclosure &enclosure : whole.enclosures)
        fields.append({QStringLiteral("File"),
                       shownEnclosure(enclosure, whole.enclosureDetails.value(enclosure.uri()))});
    return fieldLines(fields, width);
}

} // namespace

Result<WholeMessage> readMessage(const Store &store, const MessageHeadline &headline)
{
    const QString uri = headline.uri;
    const Messages messages(store);
    const Enclosures enclosures(store);
    const auto message = messages.get(uri);
    if (!message)
        return Failure(message.error());
    const auto details = messages.details({uri});
    if (!details)
        return Failure(details.error());
    const auto files = enclosures.ofMessage(uri);
    if (!files)
        return Failure(files.error());
    QStringList uris;
    for (const FeedEnclosure &enclosure : *files)
        uris.append(enclosure.uri());
    return enclosures.details(uris).map([&](const QHash<QString, EnclosureDetails> &ofFiles) {
        return WholeMessage{headline, *message, details->value(uri), *files, ofFiles};
    });
}

QString htmlOf(const WholeMessage &whole)
{
    const QString text = whole.message.description();
    return text.isEmpty() ? whole.message.summary() : text;
}

QStringList messageLines(const WholeMessage &whole, int width)
{
    QStringList lines = wrapped(terminalText(shownTitle(whole.message.title())), width);
    lines.append(QString(qMin(width, displayWidth(lines.constFirst())), QLatin1Char('=')));
    lines += headLines(whole, width);
    lines.append(QString());
    const QUrl base = whole.details.baseUrl.isEmpty() ? QUrl(whole.message.link()) : whole.details.baseUrl;
    const QStringList text = laidOut(Article::fromHtml(htmlOf(whole), base), width);
    return lines + (text.isEmpty() ? QStringList(QStringLiteral("(no text)")) : text);
}

QJsonObject messageJson(const WholeMessage &whole)
{
    QJsonArray files;
    for (const FeedEnclosure &enclosure : whole.enclosures)
        files.append(enclosureJson(enclosure, whole.enclosureDetails.value(enclosure.uri())));
    QJsonObject json = headlineJson(whole.headline);
    addText(json, "author", whole.details.authors.join(QLatin1String(", ")));
    addList(json, "categories", whole.details.categories);
    addTime(json, "updated", whole.details.updatedDate);
    addTime(json, "downloaded", whole.message.downloadedTime());
    addText(json, "summary", withoutPasswords(plainText(whole.message.summary())));
    addText(json, "text", withoutPasswords(plainText(htmlOf(whole))));
    addText(json, "html", withoutPasswords(htmlOf(whole)));
    if (!files.isEmpty())
        json.insert(QStringLiteral("enclosures"), files);
    return json;
}

} // namespace Tidel
