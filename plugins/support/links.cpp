// SPDX-License-Identifier: LGPL-2.1-or-later
#include "links.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>

namespace Tidel {

namespace {

// No server takes longer ones, and the store keeps an index of links.
constexpr int maximumLinkLength = 16 * 1024;

QString digest(const QString &text, int hexDigits)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QString::fromLatin1(hash.left(hexDigits));
}

bool isIn(const QString &scheme, std::initializer_list<const char *> schemes)
{
    return std::any_of(schemes.begin(), schemes.end(),
                       [&](const char *candidate) { return scheme == QLatin1String(candidate); });
}

bool needsHost(const QString &scheme) { return isIn(scheme, {"http", "https", "ftp", "gemini", "gopher"}); }

bool canFollow(const QUrl &url)
{
    const QString scheme = url.scheme();
    return (needsHost(scheme) && !url.host().isEmpty())
        || isIn(scheme, {"file", "magnet", "mailto", "news", "nntp"});
}

bool canDownload(const QUrl &url)
{
    const QString scheme = url.scheme();
    return (isIn(scheme, {"http", "https", "ftp"}) && !url.host().isEmpty())
        || scheme == QLatin1String("file");
}

/// Line breaks inside of an address, with the blanks around them, come from wrapped lines in the document.
QString unwrapped(const QString &link)
{
    static const QRegularExpression lineBreak(QStringLiteral("\\s*[\\r\\n]\\s*|\\t"));
    QString text = link.trimmed();
    const bool hasBreaks =
        std::any_of(text.begin(), text.end(), [](QChar c) { return c < QLatin1Char(' '); });
    return hasBreaks ? text.remove(lineBreak) : text;
}

bool isSafeInReference(QChar c)
{
    static const QString forbidden = QStringLiteral("<>\"{}|^`\\");
    return c > QLatin1Char(' ') && c < QChar(0x7f) && !forbidden.contains(c);
}

/// Whether \a link is of the common kind that encoding leaves as it is, which is quicker to see than to try.
bool isPlainWebAddress(const QString &link)
{
    static const QRegularExpression pattern(
        QStringLiteral("^https?://(?:[a-z0-9]{1,20}(?:-[a-z0-9]{1,20}){0,2}\\.){1,4}[a-z]{2,20}"
                       "(?:[/?][A-Za-z0-9/._~?=&+,;:@!$*()-]*)?$"));
    return pattern.match(link).hasMatch();
}

/// Encodes \a url until encoding it again changes nothing; empty when that does not come to an end.
QString fixedForm(const QUrl &url)
{
    QString text = encodedUrl(url);
    for (int round = 0; round < 3; ++round) {
        const QUrl again = QUrl::fromUserInput(text);
        const QString next = encodedUrl(again);
        if (next == text) {
            const bool isSafe = std::all_of(text.begin(), text.end(), isSafeInReference);
            return isSafe && again.scheme() == url.scheme() ? text : QString();
        }
        text = next;
    }
    return QString();
}

QString clean(const QString &link, const QUrl &base, bool (*isWanted)(const QUrl &))
{
    const QString text = unwrapped(link);
    if (isPlainWebAddress(text))
        return text;
    if (text.isEmpty() || text.size() > maximumLinkLength)
        return QString();
    const QUrl url = isRelativeLink(text) ? base.resolved(QUrl(text)) : QUrl(text);
    return url.isValid() && isWanted(url) ? fixedForm(url) : QString();
}

} // namespace

QString encodedUrl(const QUrl &url) { return QString::fromLatin1(url.toEncoded()); }

bool isRelativeLink(const QString &link)
{
    static const QRegularExpression scheme(QStringLiteral("^\\s*[A-Za-z][A-Za-z0-9+.-]*:"));
    return !scheme.match(link).hasMatch();
}

QString cleanLink(const QString &link, const QUrl &base) { return clean(link, base, canFollow); }

bool isEncodedLink(const QString &link)
{
    return isPlainWebAddress(link) || (!isRelativeLink(link) && fixedForm(QUrl(link)) == link);
}

QString cleanFileLink(const QString &link, const QUrl &base) { return clean(link, base, canDownload); }

QString linkForItem(const QString &link, const QString &id)
{
    const QChar separator = QLatin1Char(link.contains(QLatin1Char('#')) ? '-' : '#');
    return link + separator + QLatin1String("tidel-") + digest(id, 16);
}

QString itemUrn(const QString &feedLink, const QString &id)
{
    return QLatin1String("urn:tidel:item:") + digest(feedLink + QLatin1Char('\n') + id, 40);
}

} // namespace Tidel
