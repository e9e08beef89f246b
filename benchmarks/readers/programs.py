# SPDX-License-Identifier: LGPL-2.1-or-later
"""The programs that are compared. Each has a folder of its own, and is asked for what it has stored."""

import contextlib
import json
import os
import pathlib
import shutil
import sqlite3
import sys

import process


class Program:
    """A reader with the feeds in one folder."""

    name = ""

    def __init__(self, folder, feeds):
        self.folder = folder
        self.feeds = sorted(feeds.glob("*.xml"))
        self.folder.mkdir(parents=True)
        self.environment = {"HOME": str(folder), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8"}

    def run(self, *command):
        return process.run(command, self.environment)

    def size(self):
        """The size of what is stored, in bytes."""
        return sum(path.stat().st_size for path in self.store().rglob("*") if path.is_file())


class Tidel(Program):
    name = "Tidel"
    executable = None

    def __init__(self, folder, feeds):
        super().__init__(folder, feeds)
        self.environment["XDG_DATA_HOME"] = str(folder / "data")

    def tidel(self, *arguments):
        return self.run(self.executable, *arguments)

    def first(self):
        return self.tidel("subscribe", *self.feeds)

    def refresh(self):
        return self.tidel("refresh")

    def channels(self):
        return self.tidel("channels")

    def search(self, words):
        return self.tidel("search", "--limit", "20", *words)

    def count(self):
        channels = self.tidel("channels", "--json").text.splitlines()
        return sum(json.loads(channel)["messages"] for channel in channels)

    def store(self):
        return self.folder / "data"


class Newsboat(Program):
    name = "newsboat"

    def __init__(self, folder, feeds):
        super().__init__(folder, feeds)
        (folder / "urls").write_text("".join(f"file://{path}\n" for path in self.feeds))
        (folder / "config").write_text("max-items 0\n")

    def newsboat(self, *arguments):
        return self.run("newsboat", "-u", self.folder / "urls", "-c", self.folder / "cache.db", "-C",
                        self.folder / "config", *arguments)

    def first(self):
        return self.refresh()

    def refresh(self):
        return self.newsboat("-x", "reload")

    def channels(self):
        return self.newsboat("-x", "print-unread")

    def count(self):
        with contextlib.closing(sqlite3.connect(self.folder / "cache.db")) as database:
            return database.execute("SELECT count(*) FROM rss_item").fetchone()[0]

    def store(self):
        return self.folder


class Sfeed(Program):
    name = "sfeed"

    def __init__(self, folder, feeds):
        super().__init__(folder, feeds)
        lines = "".join(f'feed "{path.stem}" "file://{path}"\n' for path in self.feeds)
        (folder / "sfeedrc").write_text(f'sfeedpath="{folder}/feeds"\nfeeds() {{\n{lines}}}\n')

    def first(self):
        return self.refresh()

    def refresh(self):
        return self.run("sfeed_update", self.folder / "sfeedrc")

    def channels(self):
        return self.run("sh", "-c", f"sfeed_plain {self.folder}/feeds/* | wc -l")

    def count(self):
        return sum(path.read_bytes().count(b"\n") for path in self.store().iterdir())

    def store(self):
        return self.folder / "feeds"


class Sqlite(Program):
    """The least that a reader does, in Python."""

    name = "SQLite with full text"

    def sqlite(self, *arguments):
        return self.run(sys.executable, pathlib.Path(__file__).with_name("sqlitereader.py"), self.folder / "archive.db",
                        *arguments)

    def first(self):
        return self.refresh()

    def refresh(self):
        return self.sqlite("refresh", *self.feeds)

    def channels(self):
        return self.sqlite("channels")

    def search(self, words):
        return self.sqlite("search", *words)

    def count(self):
        return int(self.sqlite("count").text)

    def store(self):
        return self.folder


def installed():
    """The programs on this machine."""
    needs = {Newsboat: "newsboat", Sfeed: "sfeed_update"}
    return [Tidel] + [each for each, command in needs.items() if shutil.which(command)] + [Sqlite]
