// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: parsefeeds FILE...
// Parses the files with KDE Syndication, and does nothing else.
#include <Syndication/DocumentSource>
#include <Syndication/Feed>
#include <Syndication/Item>
#include <Syndication/ParserCollection>

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    int items = 0;
    for (const QString &name : application.arguments().mid(1)) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "could not read %s\n", qPrintable(name));
            return 1;
        }
        const Syndication::DocumentSource source(file.readAll(), name);
        if (const Syndication::FeedPtr feed = Syndication::parserCollection()->parse(source))
            items += feed->items().size();
    }
    std::printf("%d items\n", items);
    return 0;
}
