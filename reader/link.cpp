// SPDX-License-Identifier: LGPL-2.1-or-later
#include "link.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>

namespace Tidel {

namespace {

// Servers accept no longer links, and the store keeps an index of links.
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

/// Removes line breaks within an address, with the blanks around them: they come from wrapped lines.
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

/// Returns true if \a link is of the common kind that encoding does not change. This is faster than encoding.
bool isPlainWebAddress(const QString &link)
{
    // "$" would also match before a line break.
    static const QRegularExpression pattern(
        QStringLiteral("^https?://(?:[a-z0-9]{1,20}(?:-[a-z0-9]{1,20}){0,2}\\.){1,4}[a-z]{2,20}"
                       "(?:[/?][A-Za-z0-9/._~?=&+,;:@!$*()-]*)?\\z"));
    return pattern.match(link).hasMatch();
}

/// Encodes \a url until encoding it again changes nothing. Empty if three rounds are not enough.
QString fixedForm(const QUrl &url)
{
    QString text = Link::encoded(url);
    for (int round = 0; round < 3; ++round) {
        const QUrl again = QUrl::fromUserInput(text);
        const QString next = Link::encoded(again);
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
    const QUrl url = Link::isRelative(text) ? base.resolved(QUrl(text)) : QUrl(text);
    return url.isValid() && isWanted(url) ? fixedForm(url) : QString();
}

} // namespace

Link Link::fromText(const QString &text, const QUrl &base) { return Link(clean(text, base, canFollow)); }

Link Link::toFile(const QString &text, const QUrl &base) { return Link(clean(text, base, canDownload)); }

Link Link::fromEncoded(const QString &text)
{
    const bool isFit = text.size() <= maximumLinkLength
        && (isPlainWebAddress(text) || (!isRelative(text) && fixedForm(QUrl(text)) == text));
    return isFit ? Link(text) : Link();
}

Link Link::ofItem(const QString &feedLink, const QString &id)
{
    return Link(QLatin1String("urn:tidel:item:") + digest(feedLink + QLatin1Char('\n') + id, 40));
}

Link Link::forItem(const QString &id) const
{
    const QChar separator = QLatin1Char(m_text.contains(QLatin1Char('#')) ? '-' : '#');
    return Link(m_text + separator + QLatin1String("tidel-") + digest(id, 16));
}

bool Link::isRelative(const QString &text)
{
    static const QRegularExpression scheme(QStringLiteral("^\\s*[A-Za-z][A-Za-z0-9+.-]*:"));
    return !scheme.match(text).hasMatch();
}

QString Link::encoded(const QUrl &url) { return QString::fromLatin1(url.toEncoded()); }

} // namespace Tidel
