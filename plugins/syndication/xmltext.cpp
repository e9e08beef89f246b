// SPDX-License-Identifier: LGPL-2.1-or-later
#include "xmltext.h"

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#else
#include <QStringDecoder>
#endif

#include <cctype>
#include <cstring>

namespace Tidel {

namespace {

int declarationLength(const QByteArray &document)
{
    return document.startsWith("<?xml") ? document.indexOf('>') + 1 : 0;
}

/// The encoding that the document declares, in lower case; empty if it declares none.
QByteArray declaredEncoding(const QByteArray &document)
{
    const QByteArray declaration = document.left(declarationLength(document));
    const int name = declaration.indexOf("encoding");
    if (name < 0)
        return QByteArray();
    int open = name;
    while (open < declaration.size() && declaration.at(open) != '"' && declaration.at(open) != '\'')
        ++open;
    const int close = open < declaration.size() ? declaration.indexOf(declaration.at(open), open + 1) : -1;
    return declaration.mid(open + 1, close - open - 1).trimmed().toLower();
}

/// The UTF-16 or UTF-32 encoding that the first bytes show; empty if they may be ASCII.
QByteArray wideEncoding(const QByteArray &document)
{
    const QByteArray start = document.left(4);
    if (start == QByteArray("\xff\xfe\0\0", 4) || start == QByteArray("\0\0\xfe\xff", 4))
        return "utf-32";
    if (start.startsWith("\xff\xfe") || start.startsWith("\xfe\xff"))
        return "utf-16";
    if (!start.contains('\0'))
        return QByteArray();
    return start.startsWith('\0') ? "utf-16be" : "utf-16le";
}

bool startsWithAny(const QByteArray &text, std::initializer_list<const char *> beginnings)
{
    for (const char *beginning : beginnings) {
        if (text.startsWith(beginning))
            return true;
    }
    return false;
}

bool isUtf8Name(const QByteArray &encoding)
{
    return encoding.isEmpty() || encoding == "utf-8" || encoding == "utf8" || encoding == "us-ascii";
}

bool isSupersetOfAscii(const QByteArray &encoding)
{
    return isUtf8Name(encoding) || startsWithAny(encoding, {"iso-8859-", "windows-125"});
}

std::optional<QString> decoded(const QByteArray &document, const QByteArray &encoding)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const QTextCodec *codec = QTextCodec::codecForName(encoding);
    return codec ? std::optional<QString>(codec->toUnicode(document)) : std::nullopt;
#else
    QStringDecoder decoder(encoding.constData());
    return decoder.isValid() ? std::optional<QString>(decoder.decode(document)) : std::nullopt;
#endif
}

QByteArray withoutDeclaration(const QByteArray &document)
{
    return document.mid(declarationLength(document));
}

std::optional<QByteArray> transcoded(const QByteArray &document, const QByteArray &encoding, QString *error)
{
    const std::optional<QString> text = decoded(document, encoding);
    if (!text) {
        *error = QStringLiteral("the document has the encoding \"%1\", which is not supported")
                     .arg(QString::fromLatin1(encoding));
        return std::nullopt;
    }
    QByteArray utf8 = text->toUtf8();
    if (utf8.startsWith("\xef\xbb\xbf"))
        utf8.remove(0, 3);
    return withoutDeclaration(utf8);
}

int continuationBytes(uchar lead)
{
    if (lead < 0x80)
        return 0;
    if (lead >= 0xc2 && lead <= 0xdf)
        return 1;
    if ((lead & 0xf0) == 0xe0)
        return 2;
    return lead >= 0xf0 && lead <= 0xf4 ? 3 : -1;
}

/// The position of the first invalid UTF-8 sequence in \a text; -1 if there is none.
int findNotUtf8(const QByteArray &text)
{
    const auto *const start = reinterpret_cast<const uchar *>(text.constData());
    const uchar *const end = start + text.size();
    for (const uchar *at = start; at < end;) {
        quint64 block = Q_UINT64_C(0x8080808080808080);
        if (end - at >= 8)
            memcpy(&block, at, sizeof block);
        if (!(block & Q_UINT64_C(0x8080808080808080))) {
            at += 8;
            continue;
        }
        const uchar *const character = at++;
        int more = continuationBytes(*character);
        for (; more > 0 && at < end && (*at & 0xc0) == 0x80; --more)
            ++at;
        if (more != 0)
            return int(character - start);
    }
    return -1;
}

QString encodingError(const QByteArray &document, int place)
{
    const QByteArray before = document.left(place);
    return notWellFormed(before.count('\n') + 1, place - before.lastIndexOf('\n'),
                         QStringLiteral("invalid UTF-8"));
}

/// Moves white space before the declaration behind it, so that line numbers stay the same.
QByteArray declarationFirst(const QByteArray &document)
{
    const int bodyStart = document.startsWith("\xef\xbb\xbf") ? 3 : 0;
    int start = bodyStart;
    while (start < document.size() && isspace(uchar(document.at(start))))
        ++start;
    if (start == 0 || !document.mid(start, 5).startsWith("<?xml"))
        return document;
    const int end = document.indexOf('>', start) + 1;
    return document.mid(start, end - start) + document.mid(bodyStart, start - bodyStart) + document.mid(end);
}

std::optional<QByteArray> checkedUtf8(const QByteArray &document, QString *error)
{
    const int place = findNotUtf8(document);
    if (place < 0)
        return document;
    if (declarationLength(document) == 0)
        return "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + document;
    *error = encodingError(document, place);
    return std::nullopt;
}

} // namespace

QString notWellFormed(qint64 line, qint64 column, const QString &reason)
{
    return QStringLiteral("the document is not well-formed XML (line %1, column %2: %3)")
        .arg(QString::number(line), QString::number(column), reason.simplified());
}

std::optional<QByteArray> readableXml(const QByteArray &document, QString *error)
{
    const QByteArray wide = wideEncoding(document);
    if (!wide.isEmpty())
        return transcoded(document, wide, error);
    const QByteArray ordered = declarationFirst(document);
    const QByteArray encoding = declaredEncoding(ordered);
    if (startsWithAny(encoding, {"utf-16", "utf-32", "ucs-2", "ucs-4", "iso-10646"}))
        return checkedUtf8(withoutDeclaration(ordered), error);
    if (!isSupersetOfAscii(encoding))
        return transcoded(ordered, encoding, error);
    return isUtf8Name(encoding) ? checkedUtf8(ordered, error) : ordered;
}

} // namespace Tidel
