// SPDX-License-Identifier: LGPL-2.1-or-later
#include "articlehtml.h"

#include "shownmessage.h"
#include "weblinks.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTime>

namespace Tidel {

const QString downloadScheme = QStringLiteral("tidel-download");
const QString openScheme = QStringLiteral("tidel-open");

namespace {

struct ArticleHtml
{
    Q_DECLARE_TR_FUNCTIONS(Tidel::ArticleHtml)
};

QString shownDate(const QDateTime &date)
{
    const QDateTime local = date.toLocalTime();
    const QLocale locale;
    return locale.toString(local.date(), QLocale::LongFormat) + QLatin1Char(' ')
        + locale.toString(local.time(), QLocale::ShortFormat);
}

/// \a parts in a row. Each is isolated, so that texts in other directions do not change the order.
QString inRow(const QStringList &parts)
{
    QStringList isolated;
    for (const QString &part : parts) {
        if (!part.isEmpty())
            isolated.append(QChar(0x2068) + part.toHtmlEscaped() + QChar(0x2069));
    }
    return isolated.join(QStringLiteral(" \u00b7 "));
}

QString line(const QString &className, const QString &html)
{
    return html.isEmpty() ? QString() : QStringLiteral("<p class=\"%1\">%2</p>").arg(className, html);
}

QString link(const QUrl &target, const QString &text)
{
    return QStringLiteral("<a href=\"%1\">%2</a>")
        .arg(QString::fromUtf8(target.toEncoded()).toHtmlEscaped(), text.toHtmlEscaped());
}

QString dates(const ShownMessage &shown)
{
    const QDateTime published = shown.message.publishedDate();
    const QDateTime updated = shown.details.updatedDate;
    QStringList parts;
    if (published.isValid())
        parts.append(shownDate(published));
    if (updated.isValid() && (!published.isValid() || published.secsTo(updated) > 60))
        parts.append(ArticleHtml::tr("updated %1").arg(shownDate(updated)));
    return parts.join(QStringLiteral(", "));
}

QString duration(int seconds)
{
    if (seconds <= 0)
        return {};
    const QString rest = QStringLiteral("%1:%2")
                             .arg(seconds / 60 % 60, seconds < 3600 ? 1 : 2, 10, QLatin1Char('0'))
                             .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    return seconds < 3600 ? rest : QStringLiteral("%1:%2").arg(seconds / 3600).arg(rest);
}

QString enclosureHtml(const ShownMessage &shown, int index)
{
    const FeedEnclosure &enclosure = shown.enclosures.at(index);
    const EnclosureDetails details = shown.enclosureDetails.value(enclosure.uri());
    const QString fileName = QUrl(enclosure.remoteUrl()).fileName();
    const QString name = !details.title.isEmpty() ? details.title
        : !fileName.isEmpty()                     ? fileName
                                                  : enclosure.mimeType();
    const QString size = enclosure.length() > 0 ? QLocale().formattedDataSize(enclosure.length()) : QString();
    const bool isHere = !enclosure.localUrl().isEmpty();
    const qint64 part = shown.partSizes.value(enclosure.uri());
    const QString download = part > 0
        ? ArticleHtml::tr("Continue (%1 there)").arg(QLocale().formattedDataSize(part))
        : ArticleHtml::tr("Download");
    const QString target = QStringLiteral("%1:%2").arg(isHere ? openScheme : downloadScheme).arg(index);
    return line(QStringLiteral("file"),
                QStringLiteral("<b>%1</b> <span class=\"faint\">%2</span> &nbsp; %3")
                    .arg(name.toHtmlEscaped(),
                         inRow({enclosure.mimeType(), duration(details.duration), size}),
                         link(QUrl(target), isHere ? ArticleHtml::tr("Open") : download)));
}

} // namespace

int enclosureOf(const QUrl &url)
{
    bool isNumber = false;
    const int index = url.path().toInt(&isNumber);
    return isNumber && (url.scheme() == downloadScheme || url.scheme() == openScheme) ? index : -1;
}

QString headHtml(const ShownMessage &shown)
{
    const QString title =
        shown.message.title().isEmpty() ? ArticleHtml::tr("No title") : shown.message.title();
    const QUrl address(shown.message.link());
    const QString heading = isWebLink(address)
        ? QStringLiteral("<a class=\"title\" href=\"%1\">%2</a>")
              .arg(QString::fromUtf8(address.toEncoded()).toHtmlEscaped(), title.toHtmlEscaped())
        : title.toHtmlEscaped();
    const QUrl comments = shown.details.comments.toUrl();
    const QString more = isWebLink(comments) ? link(comments, ArticleHtml::tr("Comments")) : QString();
    return QStringLiteral("<h1>%1</h1>").arg(heading)
        + line(QStringLiteral("facts"), inRow(shown.channelTitles + shown.details.authors))
        + line(QStringLiteral("facts"), inRow({dates(shown)}))
        + line(QStringLiteral("facts"), inRow(shown.details.categories)) + line(QStringLiteral("facts"), more)
        + QStringLiteral("<hr>");
}

QString enclosuresHtml(const ShownMessage &shown)
{
    QString html;
    for (int i = 0; i < shown.enclosures.size(); ++i)
        html += enclosureHtml(shown, i);
    return html.isEmpty() ? html : QStringLiteral("<hr>") + html;
}

} // namespace Tidel
