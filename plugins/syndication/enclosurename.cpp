// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosurename.h"

namespace Tidel {

namespace {

// File systems allow 255 bytes. A number may be added to the stem.
constexpr int maximumStemBytes = 200;
constexpr int maximumSuffixBytes = 40;

/// Returns true if \a c must not be part of a file name; otherwise returns false.
bool isForbidden(uint c)
{
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned:
    case QChar::Other_PrivateUse:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph: return true;
    default: return false;
    }
}

QString withoutForbidden(const QString &text)
{
    QString clean;
    const auto characters = text.toUcs4();
    for (uint c : characters) {
        const char32_t character = c;
        if (c == '/' || c == '\\')
            clean += QLatin1Char('_');
        else if (!isForbidden(c))
            clean += QString::fromUcs4(&character, 1);
    }
    return clean.simplified();
}

/// The longest beginning of \a text that has at most \a bytes in UTF-8.
QString shortened(QString text, int bytes)
{
    while (text.toUtf8().size() > bytes) {
        const QChar last = text.at(text.size() - 1);
        text.chop(last.isLowSurrogate() ? 2 : 1);
    }
    return text;
}

} // namespace

EnclosureName::EnclosureName(const QUrl &address)
{
    const QString path = address.path(QUrl::FullyEncoded);
    const QString encoded = path.section(QLatin1Char('/'), -1);
    QString name = withoutForbidden(QUrl::fromPercentEncoding(encoded.toLatin1()));
    // A dot would hide the file. "rm *" would read a dash as the start of an option.
    while (QStringLiteral(".- ").contains(name.left(1)) && !name.isEmpty())
        name.remove(0, 1);
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot > 0 && name.mid(dot).toUtf8().size() <= maximumSuffixBytes)
        m_suffix = name.mid(dot);
    m_stem = shortened(name.left(name.size() - m_suffix.size()), maximumStemBytes);
    if (m_stem.isEmpty())
        m_stem = QStringLiteral("enclosure");
}

QString EnclosureName::attempt(int number) const
{
    return number == 1 ? m_stem + m_suffix : m_stem + QLatin1Char('-') + QString::number(number) + m_suffix;
}

} // namespace Tidel
