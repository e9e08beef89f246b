// SPDX-License-Identifier: LGPL-2.1-or-later
#include "markup.h"

#include <TidelReader/cleantext.h>
#include <TidelReader/htmltext.h>

#include <QRegularExpression>

#include <gumbo.h>

namespace Tidel {

namespace {

enum class Type { Unknown, PlainText, Html, Xhtml };

/// The type attribute of \a element without parameters.
QString typeAttributeOf(const Element &element)
{
    return lineOf(element.value("type")).toLower().section(QLatin1Char(';'), 0, 0).trimmed();
}

/// The type that \a element declares.
Type declaredType(const Element &element)
{
    const QString type = typeAttributeOf(element);
    if (element.hasMarkup)
        return Type::Xhtml;
    if (type.isEmpty())
        return element.isAtom ? Type::PlainText : Type::Unknown;
    if (type == QLatin1String("text") || type == QLatin1String("plain")
        || type == QLatin1String("text/plain"))
        return Type::PlainText;
    const bool isHtml = type.startsWith(QLatin1String("text/")) || type.contains(QLatin1String("html"));
    return isHtml ? Type::Html : Type::Unknown;
}

// Atom 1.0 encodes all that is neither text nor XML, Atom 0.3 what it says to encode.
bool isBase64(const Element &element)
{
    const QString type = typeAttributeOf(element);
    const bool isBinary = type.contains(QLatin1Char('/')) && !type.startsWith(QLatin1String("text/"))
        && !type.endsWith(QLatin1String("xml"));
    return element.value("mode") == "base64" || (isBinary && element.isAtom && element.value("mode").empty());
}

/// The text that \a base64 encodes; empty if that is no text, and \a base64 itself if it encodes nothing.
QString decodedBase64(const QString &base64)
{
    const QByteArray code = base64.toLatin1().simplified().replace(' ', "");
    const auto decoded = QByteArray::fromBase64Encoding(code, QByteArray::AbortOnBase64DecodingErrors);
    const QString text = decoded ? QString::fromUtf8(*decoded) : base64;
    const bool isText = !text.contains(QChar(0)) && !text.contains(QChar::ReplacementCharacter);
    return isText ? text : QString();
}

/// The text of \a element. White space around it is left out; a no-break space counts as text.
QString textOf(const Element &element)
{
    static const QString blanks = QStringLiteral(" \t\r\n");
    QString text = QString::fromStdString(element.text);
    text = cleanText(isBase64(element) ? decodedBase64(text) : text);
    int start = 0;
    int end = int(text.size());
    while (start < end && blanks.contains(text.at(start)))
        ++start;
    while (end > start && blanks.contains(text.at(end - 1)))
        --end;
    return text.mid(start, end - start);
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

} // namespace

QString titleOf(const Element *element)
{
    if (!element)
        return QString();
    const Type type = declaredType(*element);
    const QString text = textOf(*element);
    const bool isMarkup = type == Type::Xhtml || (type != Type::PlainText && isHtml(text));
    return isMarkup ? plainText(text) : text.simplified();
}

QString htmlOf(const Element *element)
{
    if (!element)
        return QString();
    const Type type = declaredType(*element);
    const QString text = textOf(*element);
    if (type == Type::Xhtml)
        return withoutFrame(text);
    if (type == Type::PlainText || (type == Type::Unknown && !isHtml(text)))
        return htmlOfPlainText(text);
    return isEncodedTwice(text) ? decodedOnce(text) : text;
}

// QString::replace() takes a time that grows with the square of the number of lines.
QString htmlOfPlainText(const QString &text)
{
    const QString escaped = text.toHtmlEscaped();
    QString html;
    html.reserve(escaped.size());
    for (const QChar c : escaped) {
        if (c == QLatin1Char('\n'))
            html += QLatin1String("<br/>");
        html += c;
    }
    return html;
}

} // namespace Tidel
