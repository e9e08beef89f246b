#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""usage: make.py TIDEL FEEDS FOLDER

Runs tidel in a terminal on the sample feeds, on a fixed day, and writes a picture of each screen as SVG."""
import html
import os
import pty
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

import pyte

COLUMNS = 88
ROWS = 60
CELL_WIDTH = 8.4
LINE_HEIGHT = 18
NOW = "@2026-11-21 12:00:00"
COLOURS = {"default": "#d8dee9", "red": "#e06c75", "green": "#98c379", "brown": "#e5c07b", "blue": "#61afef",
           "magenta": "#c678dd", "cyan": "#56b6c2", "white": "#ffffff", "black": "#3b4252"}

PREPARATION = [
    ["edit", "Riverside Courier", "--link", "https://courier.example.org/feed.xml"],
    ["edit", "The Slow Kitchen", "--link", "https://kitchen.example.net/feed.atom"],
    ["edit", "Orbit & Onwards", "--link", "https://orbit.example.com/feed.xml"],
    ["folder", "Riverside Courier", "News"],
    ["read", "--all", "--older-than", "8d"],
    ["favorite", "https://kitchen.example.net/2026/what-to-do"],
]
PICTURES = {
    "channels": ["channels"],
    "messages": ["messages", "--limit", "12"],
    "show": ["show", "https://kitchen.example.net/2026/barley-soup-for"],
    "search": ["search", "soup"],
    "stats": ["stats"],
}


def screen_of(command, environment):
    """What a terminal shows after the command, as lines of cells."""
    screen = pyte.Screen(COLUMNS, ROWS)
    stream = pyte.ByteStream(screen)
    child, terminal = pty.fork()
    if child == 0:
        subprocess.run(["stty", "rows", str(ROWS), "cols", str(COLUMNS)], check=True)
        os.execvpe(command[0], command, environment)
    while True:
        try:
            data = os.read(terminal, 65536)
        except OSError:
            break
        if not data:
            break
        stream.feed(data)
    os.waitpid(child, 0)
    lines = [[screen.buffer[y][x] for x in range(COLUMNS)] for y in range(ROWS)]
    while lines and all(cell.data.strip() == "" for cell in lines[-1]):
        lines.pop()
    return lines


def spans(line):
    """Runs of equal style in a line: start, text, style."""
    runs = []
    for column, cell in enumerate(line):
        if cell.data == "":  # the second half of a wide character
            continue
        style = (cell.fg, cell.bold, cell.italics, cell.underscore)
        if runs and runs[-1][2] == style:
            runs[-1][1].append(cell.data)
        else:
            runs.append((column, [cell.data], style))
    return [(start, "".join(text).rstrip(), style) for start, text, style in runs if "".join(text).strip()]


def svg_text(row, start, text, style):
    colour, bold, italics, underscore = style
    attributes = f'fill="{COLOURS.get(colour, "#" + colour)}"'
    if bold:
        attributes += ' font-weight="bold"'
    if italics:
        attributes += ' font-style="italic"'
    if underscore:
        attributes += ' text-decoration="underline"'
    x = 16 + start * CELL_WIDTH
    y = 28 + row * LINE_HEIGHT
    return f'<text x="{x:.1f}" y="{y}" {attributes} xml:space="preserve">{html.escape(text)}</text>'


def picture(command, lines):
    width = 32 + COLUMNS * CELL_WIDTH
    height = 32 + (len(lines) + 1) * LINE_HEIGHT
    texts = [svg_text(0, 0, "$ tidel " + " ".join(command), ("green", False, False, False))]
    for row, line in enumerate(lines, 1):
        texts += [svg_text(row, *span) for span in spans(line)]
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width:.0f}" height="{height}" '
            f'font-family="DejaVu Sans Mono, monospace" font-size="14">\n'
            f'<rect width="100%" height="100%" rx="6" fill="#2e3440"/>\n' + "\n".join(texts) + "\n</svg>\n")


def main():
    tidel, feeds, folder = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    work = Path(tempfile.mkdtemp())
    environment = dict(os.environ, XDG_DATA_HOME=str(work / "data"), XDG_RUNTIME_DIR=str(work), HOME=str(work),
                       TZ="UTC", TERM="xterm", PAGER="cat")
    program = ["faketime", "-f", NOW, tidel]
    try:
        subprocess.run([*program, "subscribe", "--quiet", *sorted(str(feed) for feed in feeds.iterdir())],
                       env=environment, check=True)
        for command in PREPARATION:
            subprocess.run([*program, *command, "--quiet"], env=environment, check=True)
        for name, command in PICTURES.items():
            lines = screen_of([*program, *command], environment)
            (folder / f"{name}.svg").write_text(picture(command, lines), encoding="utf-8")
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
