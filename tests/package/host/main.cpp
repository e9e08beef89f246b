// SPDX-License-Identifier: LGPL-2.1-or-later
// A host program as short as the one in README.md.
#include <feedtrackersparql.h>

#include <QCoreApplication>
#include <QSparqlConnection>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    FeedMessage message;
    message.setTitle(QStringLiteral("Hello"));
    message.setLink(QStringLiteral("https://example.org/hello"));
    FeedChannel channel;
    channel.setTitle(QStringLiteral("Example"));
    channel.setLink(QStringLiteral("https://example.org/feed.xml"));
    channel.addChild(&message);

    FeedTrackerSparql *store = FeedTrackerSparql::instance();
    const QString uri = store->addChannel(channel);
    const bool stored = store->addMessages(channel.messages(), uri);
    const bool readBack = store->messagesForChannel(uri).value(0).title() == QLatin1String("Hello");
    const bool known = QSparqlConnection::drivers().contains(QStringLiteral("QTRACKER_DIRECT"));
    FeedTrackerSparql::releaseInstance();

    QTextStream(stdout) << (stored && readBack && known ? "stored and read back" : "failed") << '\n';
    return stored && readBack && known ? 0 : 1;
}
