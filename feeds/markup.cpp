// SPDX-License-Identifier: LGPL-2.1-or-later
#include "markup.h"

#include <TidelReader/cleantext.h>
#include <TidelReader/htmltext.h>

#include <QRegularExpression>

#include <gumbo.h>

namespace Tidel {

namespace {

enum class Type { Unknown, PlainText, Html, Xhtml, Base64 };

/// The type that \a element declares.
Type declaredType(const Element &element)
{
    const QString type = lineOf(element.value("type")).toLower().section(QLatin1Char(';'), 0, 0).trimmed();
    if (element.value("mode") == "base64")
        return Type::Base64;
    if (element.hasMarkup)
        return Type::Xhtml;
    if (type.isEmpty())
        return element.isAtom ? Type::PlainText : Type::Unknown;
    if (type == QLatin1String("text") || type == QLatin1String("plain")
        || type == QLatin1String("text/plain"))
        return Type::PlainText;
    if (type.startsWith(QLatin1String("text/")) || type == QLatin1String("html")
        || type.contains(QLatin1String("xhtml")))
        return Type::Html;
    const bool isMediaType = type.contains(QLatin1Char('/')) && !type.endsWith(QLatin1String("xml"));
    return isMediaType && element.isAtom ? Type::Base64 : Type::Unknown;
}

bool hasTagOfHtml(const QString &text)
{
    static const QRegularExpression tag(QStringLiteral("<(?:!--|/?([A-Za-z][A-Za-z0-9]*)[\\s/>])"));
    for (auto matches = tag.globalMatch(text); matches.hasNext();) {
        const QByteArray name = matches.next().captured(1).toLatin1();
        if (name.isEmpty() || gumbo_tagn_enum(name.constData(), uint(name.size())) != GUMBO_TAG_UNKNOWN)
            return true;
    }
    return false;
}

bool hasEntity(const QString &text)
{
    static const QRegularExpression entity(
        QStringLiteral("&(?:[A-Za-z][A-Za-z0-9]{1,30}|#[0-9]{1,7}|#[xX][0-9A-Fa-f]{1,6});"));
    return text.contains(QLatin1Char('&')) && entity.match(text).hasMatch();
}

bool isHtml(const QString &text)
{
    return (text.contains(QLatin1Char('<')) && hasTagOfHtml(text)) || hasEntity(text);
}

/// Returns true if \a html was escaped once too often: it is one element, without a real tag.
bool isEncodedTwice(const QString &html)
{
    static const QRegularExpression element(QStringLiteral("^\\s*&lt;[a-zA-Z].*&gt;\\s*$"),
                                            QRegularExpression::DotMatchesEverythingOption);
    return !html.contains(QLatin1Char('<')) && html.contains(QLatin1String("&lt;"))
        && element.match(html).hasMatch();
}

QString decodedOnce(QString html)
{
    return html.replace(QLatin1String("&lt;"), QLatin1String("<"))
        .replace(QLatin1String("&gt;"), QLatin1String(">"))
        .replace(QLatin1String("&quot;"), QLatin1String("\""))
        .replace(QLatin1String("&#39;"), QLatin1String("'"))
        .replace(QLatin1String("&amp;"), QLatin1String("&"));
}

/// The content of the `div` that Atom puts around XHTML.
QString withoutFrame(const QString &html)
{
    const int start = html.indexOf(QLatin1Char('>')) + 1;
    const QLatin1String end("</div>");
    const bool hasFrame = html.startsWith(QLatin1String("<div")) && html.endsWith(end)
        && html.indexOf(end) == html.size() - end.size() && html.indexOf(QLatin1String("<div"), start) < 0;
    return hasFrame ? html.mid(start, html.size() - start - end.size()).trimmed() : html;
}

QString decodedBase64(const QString &text)
{
    const auto decoded = QByteArray::fromBase64Encoding(text.toLatin1().simplified().replace(' ', ""),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? QString::fromUtf8(*decoded) : text;
}

} // namespace

QString titleOf(const Element *element)
{
    if (!element)
        return QString();
    const Type type = declaredType(*element);
    QString text = cleanText(QString::fromStdString(element->text));
    if (type == Type::Base64)
        text = decodedBase64(text);
    const bool isMarkup = type != Type::PlainText && (type == Type::Xhtml || isHtml(text));
    return isMarkup ? plainText(text) : text.simplified();
}

QString htmlOf(const Element *element)
{
    if (!element)
        return QString();
    const Type type = declaredType(*element);
    QString text = cleanText(QString::fromStdString(element->text)).trimmed();
    if (type == Type::Base64)
        text = cleanText(decodedBase64(text));
    if (type == Type::Xhtml)
        return withoutFrame(text);
    if (type == Type::PlainText || (type != Type::Html && !isHtml(text)))
        return htmlOfPlainText(text);
    return isEncodedTwice(text) ? decodedOnce(text) : text;
}

QString htmlOfPlainText(const QString &text)
{
    return text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br/>\n"));
}

} // namespace Tidel
