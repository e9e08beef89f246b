# SPDX-License-Identifier: LGPL-2.1-or-later
"""Feeds that are the same for the same arguments, and whose items stay the same when more are added."""
import datetime
import os

OLDEST = datetime.datetime(2026, 1, 1, 12, 0)


def item(name, number, files):
    date = (OLDEST + datetime.timedelta(hours=number)).strftime("%a, %d %b %Y %H:%M:%S")
    text = f"{name} says {number}. " * (5 + number % 60)
    enclosure = f'<enclosure url="{files}/{name}-{number}.ogg" length="8192" type="audio/ogg"/>' if files else ""
    return (f"<item><title>{name} {number}</title><link>{link(name, number)}</link>"
            f'<guid isPermaLink="false">{name}-{number}</guid><pubDate>{date} GMT</pubDate>'
            f"<description>{text}</description>{enclosure}</item>\n")


def link(name, number):
    return f"https://{name}.example.org/{number}"


def write_feed(path, numbers, files=""):
    """Replaces the feed at once, as a reader may be reading it. `files` is the address of its enclosures."""
    name = path.stem
    body = "".join(item(name, number, files) for number in reversed(numbers))
    new = path.with_suffix(".new")
    new.write_text(f'<rss version="2.0"><channel><title>{name}</title><link>https://{name}.example.org/</link>'
                   f"<description>Of {name}</description>\n{body}</channel></rss>\n", encoding="utf-8")
    os.replace(new, path)
