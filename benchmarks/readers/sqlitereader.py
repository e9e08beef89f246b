# SPDX-License-Identifier: LGPL-2.1-or-later
"""usage: sqlitereader.py DATABASE refresh FILE... | channels | search WORD... | count

A reader that does no more than necessary: it knows an item by its link, looks at files that have changed only, and
cleans nothing."""

import os
import sqlite3
import sys
import xml.etree.ElementTree

SCHEMA = """
CREATE TABLE IF NOT EXISTS channel (path TEXT PRIMARY KEY, title TEXT, stamp TEXT);
CREATE TABLE IF NOT EXISTS message (id INTEGER PRIMARY KEY, channel TEXT, link TEXT UNIQUE, title TEXT, text TEXT,
                                    published TEXT);
CREATE INDEX IF NOT EXISTS channel_index ON message (channel);
CREATE VIRTUAL TABLE IF NOT EXISTS words USING fts5(title, text, content='message', content_rowid='id');
CREATE TRIGGER IF NOT EXISTS added AFTER INSERT ON message BEGIN
    INSERT INTO words (rowid, title, text) VALUES (new.id, new.title, new.text);
END;
"""


def read(database, path):
    status = os.stat(path)
    stamp = f"{status.st_mtime_ns}:{status.st_size}"
    if database.execute("SELECT 1 FROM channel WHERE path = ? AND stamp = ?", (path, stamp)).fetchone():
        return
    channel = xml.etree.ElementTree.parse(path).find("channel")
    database.execute("INSERT OR REPLACE INTO channel VALUES (?, ?, ?)", (path, channel.findtext("title"), stamp))
    fields = ("link", "title", "description", "pubDate")
    database.executemany(
        "INSERT OR IGNORE INTO message (channel, link, title, text, published) VALUES (?, ?, ?, ?, ?)",
        ((path, *(item.findtext(field) for field in fields)) for item in channel.iter("item")))


def show(rows):
    for row in rows:
        print(*row)


def main():
    name, command, *arguments = sys.argv[1:]
    database = sqlite3.connect(name)
    database.execute("PRAGMA journal_mode = WAL")
    database.execute("PRAGMA synchronous = OFF")
    if command == "refresh":
        database.executescript(SCHEMA)
        for path in arguments:
            read(database, path)
        database.commit()
    elif command == "channels":
        show(database.execute("SELECT count(*), channel.title FROM channel JOIN message ON channel = path "
                              "GROUP BY path ORDER BY channel.title"))
    elif command == "search":
        show(database.execute("SELECT title, snippet(words, 1, '[', ']', '...', 12) FROM words WHERE words MATCH ? "
                              "ORDER BY rank LIMIT 20", (" ".join(arguments),)))
    elif command == "count":
        show(database.execute("SELECT count(*) FROM message"))
    database.close()


main()
