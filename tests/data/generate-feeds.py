#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Writes many or large feeds. The same options always give the same feeds, and an item is the same in all of them."""

import argparse
import datetime
import itertools
import pathlib
import random
from xml.sax.saxutils import escape

SYLLABLES = """am ba ce del em fjo gro ha in ju kel la mea nec or peb qua rid sum tor up val wim yar zeph""".split()
# As in a language, a few words are frequent and most are rare.
WORDS = ["".join(parts) for count in (1, 2, 3) for parts in itertools.product(SYLLABLES, repeat=count)]
WEIGHTS = list(itertools.accumulate(1 / rank for rank in range(1, len(WORDS) + 1)))
FIRST = datetime.datetime(2026, 1, 1, 12, 0, tzinfo=datetime.timezone.utc)
PODCAST_EVERY = 5


def words(rng, count):
    return " ".join(rng.choices(WORDS, cum_weights=WEIGHTS, k=count))


def html(rng, size):
    text = "<p>"
    while len(text) < size - 4:
        text += f"{words(rng, 12)}, <em>{words(rng, 1)}</em> & {words(rng, 1)}. "
    return text[: size - 4] + "</p>"


def item(site, feed, number, size, is_podcast):
    rng = random.Random(f"{feed}/{number}")
    date = FIRST + datetime.timedelta(hours=number, minutes=feed)
    lines = [
        "    <item>",
        f"      <title>{words(rng, 4).capitalize()} {number}</title>",
        f"      <link>{site}/items/{number}</link>",
        f'      <guid isPermaLink="false">feed-{feed}-item-{number}</guid>',
        f"      <pubDate>{date.strftime('%a, %d %b %Y %H:%M:%S')} GMT</pubDate>",
        f"      <description>{escape(html(rng, size))}</description>",
    ]
    if is_podcast:
        lines.append(f'      <enclosure url="{site}/media/{number}.mp3" length="{rng.randrange(10**6, 10**8)}"'
                     ' type="audio/mpeg"/>')
    return "\n".join(lines + ["    </item>\n"])


def feed_text(feed, items, newest, size):
    rng = random.Random(feed)
    is_podcast = feed % PODCAST_EVERY == 0
    site = f"https://feed-{feed}.example.org"
    title = f"{words(rng, 2).title()} {feed}"
    head = f"""<?xml version="1.0" encoding="UTF-8"?>
<rss version="2.0">
  <channel>
    <title>{title}</title>
    <link>{site}/</link>
    <description>{words(rng, 8).capitalize()}</description>
"""
    newest_first = range(items, max(items - newest, 0), -1)
    body = "".join(item(site, feed, number, size, is_podcast) for number in newest_first)
    return head + body + "  </channel>\n</rss>\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--feeds", type=int, default=200, help="number of files (%(default)s)")
    parser.add_argument("--items", type=int, default=50, help="items that each has published (%(default)s)")
    parser.add_argument("--newest", type=int, help="of them, the newest that the file still has (all)")
    parser.add_argument("--size", type=int, default=1024, help="characters of HTML in each item (%(default)s)")
    parser.add_argument("directory", type=pathlib.Path, help="the folder for the files feed-000.xml and so on")
    options = parser.parse_args()

    options.directory.mkdir(parents=True, exist_ok=True)
    newest = options.items if options.newest is None else options.newest
    for feed in range(options.feeds):
        path = options.directory / f"feed-{feed:03}.xml"
        path.write_text(feed_text(feed, options.items, newest, options.size), encoding="utf-8")


if __name__ == "__main__":
    main()
