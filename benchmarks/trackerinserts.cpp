// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: trackerinserts FOLDER
// Measures the CPU seconds that Tracker needs to store 200 feeds of 50 messages. Every fifth feed is a
// podcast. A feed reader cannot be faster.
#include "measure.h"
#include "samples.h"

#include <feedtrackersparql.h>

#if __has_include(<tinysparql.h>)
#include <tinysparql.h>
#else
#include <libtracker-sparql/tracker-sparql.h>
#endif

#include <QCoreApplication>

#include <cstdio>

namespace {

constexpr int feeds = 200;
constexpr int itemsOfFeed = 50;
constexpr int podcastEvery = 5;

QString insertEnclosure(int number)
{
    return QStringLiteral(
               "INSERT { <urn:enclosure:%1> a mfo:Enclosure ; "
               "mfo:remoteLink <https://www.example.org/media/%1.mp3> ; mfo:localLink <urn:none> ; "
               "mfo:optional true ; nie:contentSize 1234567 ; nie:mimeType \"audio/mpeg\" ; "
               "nie:identifier 0 ; mfo:groupDefault false ; mfo:image \"\" ; "
               "nie:isLogicalPartOf <urn:message:%1> } ")
        .arg(number);
}

QList<QByteArray> updates()
{
    QList<QByteArray> updates;
    for (int feed = 0; feed < feeds; ++feed) {
        const int first = feed * itemsOfFeed;
        QString update;
        for (const FeedMessage &message : sampleMessages(first, itemsOfFeed))
            update += FeedTrackerSparql::instance()->addMessageQuery(message,
                                                                     QStringLiteral("urn:feed:%1").arg(feed));
        for (int i = 0; feed % podcastEvery == 0 && i < itemsOfFeed; ++i)
            update += insertEnclosure(first + i);
        updates.append(update.toUtf8());
    }
    FeedTrackerSparql::releaseInstance();
    return updates;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QList<QByteArray> statements = updates();

    GFile *folder = g_file_new_for_path(argc == 2 ? argv[1] : "");
    GFile *ontology = g_file_new_for_uri("resource:///tidel/ontology");
    GError *error = nullptr;
    TrackerSparqlConnection *connection = tracker_sparql_connection_new(TRACKER_SPARQL_CONNECTION_FLAGS_NONE,
                                                                        folder, ontology, nullptr, &error);
    const Cost cost = measure([&] {
        for (int i = 0; !error && i < statements.size(); ++i)
            tracker_sparql_connection_update(connection, statements.at(i).constData(), nullptr, &error);
    });
    if (error) {
        std::fprintf(stderr, "%s\n", error->message);
        return 1;
    }
    std::printf("%-20s %6.2f s\n", "Tracker alone", cost.cpuSeconds);
    return 0;
}
