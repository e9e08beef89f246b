// SPDX-License-Identifier: LGPL-2.1-or-later
#include "opml.h"

#include "cleantext.h"
#include "folders.h"

#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>

namespace Tidel::Opml {

namespace {

constexpr int maximumFeeds = 10 * 1000;
constexpr int maximumProblems = 100;
constexpr int maximumAttributes = 100;
constexpr int maximumTitleLength = 1000;
constexpr int maximumCategoryLength = 4000;
// The root, the body and the feed itself are not folders.
constexpr int maximumElementDepth = Folders::maximumDepth + 3;

Failure failure(const QString &reason)
{
    return Failure(Error(Error::FileFailed, QStringLiteral("read the list of feeds"), reason));
}

QString atLine(qint64 line, const QString &text) { return QStringLiteral("line %1: %2").arg(line).arg(text); }

/// \a document as text. Qt 5 and Qt 6 know different encodings; these are the ones that such documents have.
Result<QString> decoded(const QByteArray &document)
{
    static const QRegularExpression declaration(
        QStringLiteral("^<\\?xml[^>]*\\bencoding\\s*=\\s*[\"']([^\"']*)[\"']"));
    if (document.startsWith("\xff\xfe") || document.startsWith("\xfe\xff")) {
        QString text = QString::fromUtf16(reinterpret_cast<const char16_t *>(document.constData()),
                                          int(document.size() / 2));
        return text;
    }
    const QByteArray bytes = document.startsWith("\xef\xbb\xbf") ? document.mid(3) : document;
    const QString encoding =
        declaration.match(QString::fromLatin1(bytes.left(200))).captured(1).toLower().left(50);
    if (encoding == QLatin1String("iso-8859-1"))
        return QString::fromLatin1(bytes);
    if (!encoding.isEmpty() && encoding != QLatin1String("utf-8") && encoding != QLatin1String("us-ascii"))
        return failure(
            atLine(1, QStringLiteral("the encoding \"%1\" is not known; save it as UTF-8").arg(encoding)));
    QString text = QString::fromUtf8(bytes);
    const QByteArray again = text.toUtf8();
    if (again == bytes)
        return text;
    const auto wrong = std::mismatch(bytes.begin(), bytes.end(), again.begin(), again.end()).first;
    return failure(atLine(std::count(bytes.begin(), wrong, '\n') + 1,
                          QStringLiteral("there is a character that is not UTF-8")));
}

/// What makes \a text too costly for a parser; empty if nothing does. The time for an element grows with the
/// square of the number of its attributes, and no attribute has a "<".
QString costOf(const QString &text)
{
    for (const char *declaration : {"<!ENTITY", "<!ATTLIST"}) {
        const auto place = text.indexOf(QLatin1String(declaration));
        if (place >= 0)
            return atLine(text.left(place).count(QLatin1Char('\n')) + 1,
                          QStringLiteral("lists of feeds have no %1").arg(QLatin1String(declaration)));
    }
    int attributes = 0;
    bool isAfterSign = false;
    for (auto c = text.begin(); c != text.end() && attributes <= maximumAttributes; ++c) {
        if (*c == QLatin1Char('<'))
            attributes = 0;
        else if (isAfterSign && (*c == QLatin1Char('"') || *c == QLatin1Char('\'')))
            ++attributes;
        isAfterSign = *c == QLatin1Char('=') || (isAfterSign && c->isSpace());
        if (attributes > maximumAttributes)
            return atLine(std::count(text.begin(), c, QLatin1Char('\n')) + 1,
                          QStringLiteral("an element has more than %1 attributes").arg(maximumAttributes));
    }
    return QString();
}

/// \a text on one line, not longer than titles may be.
QString line(const QString &text)
{
    return cleanText(cleanText(text).simplified().left(maximumTitleLength)).trimmed();
}

/// Reads the elements of a document one after another, so that their depth costs no stack.
class OpmlReader
{
public:
    explicit OpmlReader(const QString &text) : m_xml(text) { m_xml.setNamespaceProcessing(false); }

    Result<Content> read();

private:
    void start();
    void readOutline();
    void addFeed(const QString &address);
    /// The value of the attribute \a name of the element, in upper or lower case.
    QString attribute(const char *name) const;
    QString title() const;
    /// Notes that the feed is left out. Its address, which may hold a password, is not told.
    void addProblem();

    QXmlStreamReader m_xml;
    Content m_content;
    QSet<QString> m_links;
    QStringList m_folder; // The names of the folders around the next element.
    QVector<int> m_depths; // The number of folders around each open element.
};

Result<Content> OpmlReader::read()
{
    while (!m_xml.atEnd()) {
        m_xml.readNext();
        if (m_xml.isStartElement()) {
            start();
        } else if (m_xml.isEndElement()) {
            m_folder = m_folder.mid(0, m_depths.takeLast());
        }
    }
    if (!m_xml.hasError())
        return m_content;
    QString reason = m_xml.errorString().left(200);
    if (reason.endsWith(QLatin1Char('.')))
        reason.chop(1);
    return failure(atLine(m_xml.lineNumber(), reason));
}

void OpmlReader::start()
{
    const QString name = m_xml.qualifiedName().toString();
    if (m_depths.isEmpty() && name.compare(QLatin1String("opml"), Qt::CaseInsensitive) != 0)
        m_xml.raiseError(QStringLiteral("this is not an OPML document"));
    m_depths.append(int(m_folder.size()));
    if (m_depths.size() > maximumElementDepth)
        m_xml.raiseError(QStringLiteral("folders are nested more than %1 deep").arg(Folders::maximumDepth));
    else if (name == QLatin1String("outline"))
        readOutline();
}

void OpmlReader::readOutline()
{
    const QString address = attribute("xmlUrl").trimmed();
    if (address.isEmpty())
        m_folder.append(title());
    else
        addFeed(address);
}

void OpmlReader::addFeed(const QString &address)
{
    const Link link = Link::toFile(address);
    if (link.isNull()) {
        addProblem();
        return;
    }
    if (m_links.contains(link.toString()))
        return;
    m_links.insert(link.toString());
    if (m_links.size() > maximumFeeds)
        m_xml.raiseError(QStringLiteral("there are more than %1 feeds").arg(maximumFeeds));
    const QString parent = Folders::path(m_folder);
    const QString category =
        attribute("category").left(maximumCategoryLength).section(QLatin1Char(','), 0, 0);
    m_content.subscriptions.append({link, title(), Link::fromText(attribute("htmlUrl")),
                                    Folders::names(parent.isEmpty() ? category : parent)});
}

QString OpmlReader::attribute(const char *name) const
{
    const QXmlStreamAttributes attributes = m_xml.attributes();
    const auto found =
        std::find_if(attributes.begin(), attributes.end(), [&](const QXmlStreamAttribute &attribute) {
            return attribute.qualifiedName().compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
        });
    return found == attributes.end() ? QString() : found->value().toString();
}

QString OpmlReader::title() const
{
    const QString text = line(attribute("text"));
    return text.isEmpty() ? line(attribute("title")) : text;
}

void OpmlReader::addProblem()
{
    m_content.problems.append(atLine(
        m_xml.lineNumber(),
        QStringLiteral("\"%1\" is left out: its xmlUrl is not a web address or file: URL").arg(title())));
    if (m_content.problems.size() > maximumProblems)
        m_xml.raiseError(QStringLiteral("more than %1 feeds have no usable address").arg(maximumProblems));
}

} // namespace

Result<Content> read(const QByteArray &document)
{
    if (document.size() > maximumSize)
        return failure(QStringLiteral("it is larger than %1 MiB").arg(maximumSize / 1024 / 1024));
    return decoded(document).and_then([](const QString &text) -> Result<Content> {
        const QString cost = costOf(text);
        return cost.isEmpty() ? OpmlReader(text).read() : Result<Content>(failure(cost));
    });
}

} // namespace Tidel::Opml
