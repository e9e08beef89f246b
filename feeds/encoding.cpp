// SPDX-License-Identifier: LGPL-2.1-or-later
#include "encoding.h"

#include <QRegularExpression>
#include <QVector>

#include <unicode/localpointer.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucsdet.h>
#include <unicode/utf8.h>

#include <cstring>
#include <iterator>

namespace Tidel {

namespace {

const QByteArray byteOrderMark("\xef\xbb\xbf");
const QByteArray replacementCharacter("\xef\xbf\xbd");

/// A name of ICU's own, which has one for each encoding; empty if nothing is named.
using EncodingName = QByteArray;

const EncodingName utf8Name("UTF-8");
const EncodingName asciiName("US-ASCII");
const EncodingName latinName("ISO-8859-1");

bool isAsciiWithoutZero(const uchar *eightBytes)
{
    const quint64 ones = Q_UINT64_C(0x0101010101010101);
    quint64 block = 0;
    memcpy(&block, eightBytes, sizeof block);
    // The subtraction sets the highest bit of a byte that is 0.
    return !((block | (block - ones)) & (ones << 7));
}

/// Returns true if \a text is UTF-8 without U+0000.
bool isCleanUtf8(const QByteArray &text)
{
    const auto *const bytes = reinterpret_cast<const uchar *>(text.constData());
    const int size = int(text.size());
    for (int at = 0; at < size;) {
        if (size - at >= 8 && isAsciiWithoutZero(bytes + at)) {
            at += 8;
            continue;
        }
        UChar32 character = 0;
        U8_NEXT(bytes, at, size, character);
        if (character <= 0)
            return false;
    }
    return true;
}

/// The encoding that somebody calls \a name.
EncodingName encodingCalled(const QByteArray &name)
{
    if (name.isEmpty())
        return EncodingName();
    // The table of aliases is asked first, because ICU would look for a file with an unknown name.
    UErrorCode error = U_ZERO_ERROR;
    const char *const known = ucnv_getAlias(name.constData(), 0, &error);
    return U_SUCCESS(error) && known ? EncodingName(known) : utf8Name;
}

/// The encoding that means what people mean who name \a encoding, as browsers have found out.
EncodingName meantEncoding(const EncodingName &encoding)
{
    static const struct
    {
        const char *named;
        const char *meant;
    } table[] = {
        {"ISO-8859-1", "windows-1252"},
        {"US-ASCII", "windows-1252"},
        {"ibm-920_P100-1995", "windows-1254"},
        {"iso-8859_11-2001", "windows-874"},
        {"ibm-1383_P110-1999", "gb18030"},
        {"windows-936-2000", "gb18030"},
        {"ibm-970_P110_P110-2006_U2", "windows-949"},
    };
    for (const auto &row : table) {
        if (encoding == row.named)
            return encodingCalled(row.meant);
    }
    return encoding;
}

void replaceInvalid(const void *wasInvalid, UConverterToUnicodeArgs *arguments, const char *, int32_t,
                    UConverterCallbackReason reason, UErrorCode *error)
{
    if (reason > UCNV_IRREGULAR)
        return;
    *static_cast<bool *>(const_cast<void *>(wasInvalid)) = true;
    *error = U_ZERO_ERROR;
    const UChar replacement = 0xfffd;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, error);
}

/// Returns \a document in UTF-8. Sets \a wasInvalid if it has bytes that \a encoding does not allow.
QByteArray converted(const QByteArray &document, const EncodingName &encoding, bool *wasInvalid)
{
    UErrorCode error = U_ZERO_ERROR;
    const icu::LocalUConverterPointer source(ucnv_open(encoding.constData(), &error));
    const icu::LocalUConverterPointer target(ucnv_open("UTF-8", &error));
    ucnv_setToUCallBack(source.getAlias(), replaceInvalid, wasInvalid, nullptr, nullptr, &error);
    if (U_FAILURE(error))
        return QByteArray();

    QByteArray utf8;
    const char *from = document.constData();
    const char *const end = from + document.size();
    UChar pivot[4096];
    UChar *pivotFrom = pivot;
    UChar *pivotTo = pivot;
    do {
        char part[16384];
        char *to = part;
        error = U_ZERO_ERROR;
        ucnv_convertEx(target.getAlias(), source.getAlias(), &to, std::end(part), &from, end, pivot,
                       &pivotFrom, &pivotTo, std::end(pivot), false, true, &error);
        utf8.append(part, int(to - part));
    } while (error == U_BUFFER_OVERFLOW_ERROR);
    return utf8;
}

/// Returns true if \a encoding can be that of a document whose markup has been found byte by byte. UTF-16
/// cannot.
bool extendsAscii(const EncodingName &encoding)
{
    const QByteArray sample("<?xml");
    bool wasInvalid = false;
    return converted(sample, encoding, &wasInvalid) == sample;
}

/// The UTF that the first bytes of \a document show; empty if they may be of any other encoding.
EncodingName shownEncoding(const QByteArray &document)
{
    UErrorCode error = U_ZERO_ERROR;
    if (const char *name =
            ucnv_detectUnicodeSignature(document.constData(), int(document.size()), nullptr, &error))
        return name;

    static const struct
    {
        QByteArray zeros; // Where the first bytes are 0.
        EncodingName encoding;
    } table[] = {{"x000", "UTF-32LE"}, {"000x", "UTF-32BE"}, {"x0x0", "UTF-16LE"}, {"0x0x", "UTF-16BE"}};
    QByteArray zeros;
    for (const char byte : document.left(4))
        zeros += byte ? 'x' : '0';
    for (const auto &row : table) {
        if (zeros == row.zeros)
            return row.encoding;
    }
    return EncodingName();
}

/// What the declaration of \a document calls its encoding. Other text may stand before the declaration.
QByteArray declaredName(const QByteArray &document)
{
    static const QRegularExpression pattern(
        QStringLiteral("<\\?xml\\s[^>]*?encoding\\s*=\\s*[\"']?\\s*([A-Za-z0-9._:+-]+)"));
    return pattern.match(QString::fromLatin1(document.left(2048))).captured(1).toLatin1();
}

/// The encodings that are named for \a document, the most trustworthy first.
QVector<EncodingName> namedEncodings(const QByteArray &document, const QByteArray &charset)
{
    const bool isJson = document.left(1024).trimmed().startsWith('{');
    const QByteArray serverName = QByteArray(charset).replace('"', "").replace('\'', "").trimmed();
    QVector<EncodingName> encodings;
    for (const QByteArray &name : {serverName, isJson ? utf8Name : declaredName(document)}) {
        const EncodingName encoding = encodingCalled(name);
        if (!encoding.isEmpty() && extendsAscii(encoding))
            encodings.append(encoding);
    }
    return encodings;
}

/// What ICU takes the encoding of \a document for, which is not UTF-8.
EncodingName guessedEncoding(const QByteArray &document)
{
    // The letters that tell languages apart are soon found, and the time grows with the length.
    const QByteArray sample = document.left(100000);
    UErrorCode error = U_ZERO_ERROR;
    const icu::LocalUCharsetDetectorPointer detector(ucsdet_open(&error));
    ucsdet_enableInputFilter(detector.getAlias(), true);
    ucsdet_setText(detector.getAlias(), sample.constData(), int(sample.size()), &error);
    int count = 0;
    const UCharsetMatch **const matches = ucsdet_detectAll(detector.getAlias(), &count, &error);
    for (int i = 0; U_SUCCESS(error) && i < count; ++i) {
        const EncodingName encoding = encodingCalled(ucsdet_getName(matches[i], &error));
        if (extendsAscii(encoding))
            return encoding;
    }
    return latinName;
}

QString nameForUser(const EncodingName &encoding)
{
    for (const char *standard : {"MIME", "IANA"}) {
        UErrorCode error = U_ZERO_ERROR;
        if (const char *name = ucnv_getStandardName(encoding.constData(), standard, &error))
            return QString::fromLatin1(name);
    }
    return QString::fromLatin1(encoding);
}

QByteArray withoutMark(const QByteArray &utf8)
{
    int start = 0;
    while (utf8.mid(start, byteOrderMark.size()) == byteOrderMark)
        start += byteOrderMark.size();
    return utf8.mid(start);
}

// QByteArray::replace() takes a time that grows with the square of the size.
QByteArray withoutZeros(const QByteArray &utf8)
{
    QByteArray clean;
    clean.reserve(utf8.size() + int(utf8.count('\0')) * (replacementCharacter.size() - 1));
    for (const char byte : utf8)
        byte ? clean.append(byte) : clean.append(replacementCharacter);
    return clean;
}

DecodedText decoded(const QByteArray &document, const EncodingName &encoding)
{
    bool wasInvalid = false;
    DecodedText text{withoutMark(converted(document, encoding, &wasInvalid)), {}};
    if (text.utf8.contains('\0')) {
        wasInvalid = true;
        text.utf8 = withoutZeros(text.utf8);
    }
    if (wasInvalid) {
        const int line = text.utf8.left(text.utf8.indexOf(replacementCharacter)).count('\n') + 1;
        text.notes.append(
            QStringLiteral("had bytes that are not %1: line %2").arg(nameForUser(encoding)).arg(line));
    }
    return text;
}

} // namespace

DecodedText toUtf8(const QByteArray &document, const QByteArray &charset)
{
    const EncodingName shown = shownEncoding(document);
    if (!shown.isEmpty())
        return decoded(document, shown);

    const QVector<EncodingName> named = namedEncodings(document, charset);
    const bool mayBeUtf8 = named.isEmpty() || named.contains(utf8Name) || named.contains(asciiName);
    if (mayBeUtf8 && isCleanUtf8(document))
        return {document, {}};
    for (const EncodingName &encoding : named) {
        if (encoding != utf8Name)
            return decoded(document, meantEncoding(encoding));
    }
    if (!named.isEmpty())
        return decoded(document, utf8Name);
    const EncodingName guess = meantEncoding(guessedEncoding(document));
    DecodedText text = decoded(document, guess);
    text.notes.prepend(QStringLiteral("does not name its encoding: read as %1").arg(nameForUser(guess)));
    return text;
}

} // namespace Tidel
