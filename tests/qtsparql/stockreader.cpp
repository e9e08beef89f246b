// SPDX-License-Identifier: LGPL-2.1-or-later
#if __has_include(<tinysparql.h>)
#include <tinysparql.h>
#else
#include <libtracker-sparql/tracker-sparql.h>
#endif

#include <cstdio>
#include <cstring>

/**
 * A program that uses the Tracker library and its stock ontology, but nothing of this project. It opens the
 * store, read-only or not, and runs its last arguments: those that begin with INSERT as updates, the others
 * as queries. It prints the results of the queries.
 */
namespace {

int failed(const char *what, const GError *error)
{
    std::printf("%s: %s\n", what, error->message);
    return 1;
}

void printValue(TrackerSparqlCursor *cursor, int column)
{
    const char *text = tracker_sparql_cursor_get_string(cursor, column, nullptr);
    std::printf("%s%s", column == 0 ? "" : " ", text ? text : "-");
}

int query(TrackerSparqlConnection *store, const char *statement)
{
    GError *error = nullptr;
    TrackerSparqlCursor *cursor = tracker_sparql_connection_query(store, statement, nullptr, &error);
    if (!cursor)
        return failed("refused", error);
    while (tracker_sparql_cursor_next(cursor, nullptr, &error)) {
        for (int i = 0; i < tracker_sparql_cursor_get_n_columns(cursor); ++i)
            printValue(cursor, i);
        std::putchar('\n');
    }
    g_object_unref(cursor);
    return error ? failed("broken off", error) : 0;
}

int update(TrackerSparqlConnection *store, const char *statement)
{
    GError *error = nullptr;
    tracker_sparql_connection_update(store, statement, nullptr, &error);
    return error ? failed("refused", error) : 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const bool readOnly = std::strcmp(argv[1], "readonly") == 0;
    GError *error = nullptr;
    GFile *folder = g_file_new_for_path(argv[2]);
    GFile *ontology = tracker_sparql_get_ontology_nepomuk();
    TrackerSparqlConnection *store = tracker_sparql_connection_new(
        readOnly ? TRACKER_SPARQL_CONNECTION_FLAGS_READONLY : TRACKER_SPARQL_CONNECTION_FLAGS_NONE, folder,
        ontology, nullptr, &error);
    if (!store)
        return failed("not opened", error);
    int outcome = 0;
    for (int i = 3; i < argc && outcome == 0; ++i) {
        const bool isUpdate = std::strncmp(argv[i], "INSERT", 6) == 0;
        outcome = isUpdate ? update(store, argv[i]) : query(store, argv[i]);
    }
    tracker_sparql_connection_close(store);
    g_object_unref(store);
    g_object_unref(ontology);
    g_object_unref(folder);
    return outcome;
}
