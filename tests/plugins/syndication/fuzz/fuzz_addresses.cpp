// SPDX-License-Identifier: LGPL-2.1-or-later
// Reads any text as an address: what is stored fits into a statement, and a file name stays in its folder.
#include <enclosurename.h>
#include <fuzzing.h>

#include <TidelReader/documenturl.h>
#include <TidelReader/link.h>

#include <QDir>
#include <QUrl>

#include <algorithm>

using namespace Tidel;

namespace {

void checkLink(const Link &link, const QString &id)
{
    if (link.isNull())
        return;
    const QString text = link.toString();
    static const QString forbidden = QStringLiteral("<>\"{}|^`\\");
    require(std::all_of(text.begin(), text.end(),
                        [](QChar c) { return c > QChar(u' ') && c < QChar(0x7f) && !forbidden.contains(c); }),
            "a link fits into a statement");
    require(!Link::isRelative(text), "a link is absolute");
    require(Link::encoded(QUrl::fromUserInput(text)) == text, "a link stays what it is when it is read");
    require(Link::fromText(text) == link || Link::toFile(text) == link || Link::fromEncoded(text) == link,
            "cleaning a link again changes nothing");
    if (!id.isNull())
        checkLink(link.forItem(id), QString());
}

void checkName(const QUrl &address)
{
    const EnclosureName name(address);
    for (const int attempt : {1, 2, 999999}) {
        const QString file = name.attempt(attempt);
        require(!file.isEmpty() && file != QLatin1String(".") && file != QLatin1String(".."),
                "a file has a name");
        require(!file.contains(QChar(u'/')) && !file.contains(QChar(u'\0')), "a file stays in its folder");
        require(!file.startsWith(QChar(u'.')) && !file.startsWith(QChar(u'-')),
                "a file is neither hidden nor an option");
        require(QFile::encodeName(file).size() <= 255, "a name fits into file systems");
        require(QDir::cleanPath(QStringLiteral("/folder/") + file) == QStringLiteral("/folder/") + file,
                "the path of a file is clean");
    }
    require(name.attempt(1) != name.attempt(2), "each attempt has another name");
}

void checkDocument(const QString &argument)
{
    const QUrl url = documentUrl(argument);
    const QString path = url.toLocalFile();
    // The name of a file cannot have a null character.
    require(!url.isLocalFile() || path.isEmpty() || QDir::isAbsolutePath(path),
            "a local document has an absolute path or none");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = textOf(bytesOf(data, size));
    const QUrl bases[] = {QUrl(), QUrl(QStringLiteral("https://example.org/a/b?c#d")),
                          QUrl(QStringLiteral("file:///home/feed.xml"))};
    for (const QUrl &base : bases) {
        checkLink(Link::fromText(text, base), text);
        const Link file = Link::toFile(text, base);
        checkLink(file, text);
        if (!file.isNull())
            checkName(file.toUrl());
    }
    checkLink(Link::fromEncoded(text), text);
    checkLink(Link::ofItem(text, text), text);
    checkName(QUrl(text));
    checkDocument(text);
    return 0;
}
